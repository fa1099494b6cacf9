// SPDX-License-Identifier: MIT
#include "Slate/InputProcessor.h"

ICursor::~ICursor() = default;
IInputProcessor::~IInputProcessor() = default;

bool IInputProcessor::HandleKeyDownEvent(FSlateApplication&, const FKeyEvent&)
{
	return false;
}

bool IInputProcessor::HandleKeyUpEvent(FSlateApplication&, const FKeyEvent&)
{
	return false;
}

bool IInputProcessor::HandleAnalogInputEvent(FSlateApplication&, const FAnalogInputEvent&)
{
	return false;
}

bool IInputProcessor::HandleMouseMoveEvent(FSlateApplication&, const FPointerEvent&)
{
	return false;
}

bool IInputProcessor::HandleMouseButtonDownEvent(FSlateApplication&, const FPointerEvent&)
{
	return false;
}

bool IInputProcessor::HandleMouseButtonUpEvent(FSlateApplication&, const FPointerEvent&)
{
	return false;
}

bool IInputProcessor::HandleMouseButtonDoubleClickEvent(FSlateApplication&, const FPointerEvent&)
{
	return false;
}

bool IInputProcessor::HandleMouseWheelOrGestureEvent(FSlateApplication&, const FPointerEvent&, const FPointerEvent*)
{
	return false;
}

bool IInputProcessor::HandleMotionDetectedEvent(FSlateApplication&, const FMotionEvent&)
{
	return false;
}

const TCHAR* IInputProcessor::GetDebugName() const
{
	return TEXT("");
}
