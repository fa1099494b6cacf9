// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "Slate/InputEvents.h"

class FSlateApplication;

/// The mouse cursor, as far as input pre-processors see it.
class ICursor
{
public:
	virtual ~ICursor();

	virtual FScreenPosition GetPosition() const = 0;
};

/// Sees every input event before anything else of the widget application does.
///
/// A handler that returns true consumes the event: no later pre-processor, no widget and no command list sees it.
/// Registered with FSlateApplication::RegisterInputPreProcessor. The order of the virtual functions is part of the
/// interface.
class IInputProcessor
{
public:
	virtual ~IInputProcessor();

	/// Called once per frame of the application, `DeltaTime` in seconds.
	virtual void Tick(const float DeltaTime, FSlateApplication& SlateApp, TSharedRef<ICursor> Cursor) = 0;

	virtual bool HandleKeyDownEvent(FSlateApplication& SlateApp, const FKeyEvent& InKeyEvent);
	virtual bool HandleKeyUpEvent(FSlateApplication& SlateApp, const FKeyEvent& InKeyEvent);
	virtual bool HandleAnalogInputEvent(FSlateApplication& SlateApp, const FAnalogInputEvent& InAnalogInputEvent);
	virtual bool HandleMouseMoveEvent(FSlateApplication& SlateApp, const FPointerEvent& MouseEvent);
	virtual bool HandleMouseButtonDownEvent(FSlateApplication& SlateApp, const FPointerEvent& MouseEvent);
	virtual bool HandleMouseButtonUpEvent(FSlateApplication& SlateApp, const FPointerEvent& MouseEvent);
	virtual bool HandleMouseButtonDoubleClickEvent(FSlateApplication& SlateApp, const FPointerEvent& MouseEvent);

	/// `InGestureEvent` is null where the event is a plain wheel turn.
	virtual bool HandleMouseWheelOrGestureEvent(
		FSlateApplication& SlateApp, const FPointerEvent& InWheelEvent, const FPointerEvent* InGestureEvent);
	virtual bool HandleMotionDetectedEvent(FSlateApplication& SlateApp, const FMotionEvent& MotionEvent);

	/// Names the pre-processor in messages for developers.
	virtual const TCHAR* GetDebugName() const;
};
