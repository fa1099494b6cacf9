// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

/// Whether a widget is drawn, and whether it takes room when it is not.
enum class EVisibility : uint8
{
	Visible,
	Collapsed, ///< not drawn, takes no room
	Hidden,    ///< not drawn, keeps its room
};

enum class ECheckBoxState : uint8
{
	Unchecked,
	Checked,
	Undetermined,
};

enum class EHorizontalAlignment : uint8
{
	Fill,
	Left,
	Center,
	Right,
};
constexpr EHorizontalAlignment HAlign_Fill = EHorizontalAlignment::Fill;
constexpr EHorizontalAlignment HAlign_Left = EHorizontalAlignment::Left;
constexpr EHorizontalAlignment HAlign_Center = EHorizontalAlignment::Center;
constexpr EHorizontalAlignment HAlign_Right = EHorizontalAlignment::Right;

/// Room around a widget, in slate units.
struct FMargin
{
	float Left = 0.0f;
	float Top = 0.0f;
	float Right = 0.0f;
	float Bottom = 0.0f;

	constexpr FMargin() = default;
	constexpr FMargin(float Uniform)
		: Left(Uniform)
		, Top(Uniform)
		, Right(Uniform)
		, Bottom(Uniform)
	{
	}
	constexpr FMargin(float Horizontal, float Vertical)
		: Left(Horizontal)
		, Top(Vertical)
		, Right(Horizontal)
		, Bottom(Vertical)
	{
	}
	constexpr FMargin(float InLeft, float InTop, float InRight, float InBottom)
		: Left(InLeft)
		, Top(InTop)
		, Right(InRight)
		, Bottom(InBottom)
	{
	}

	constexpr bool operator==(const FMargin&) const = default;
};

/// A place on the screen, in slate units, from the top left corner.
struct FScreenPosition
{
	double X = 0.0;
	double Y = 0.0;

	constexpr bool operator==(const FScreenPosition&) const = default;
};

/// What a widget says about an event: handled ends the routing, unhandled lets it go on.
class FReply
{
public:
	static constexpr FReply Handled() { return FReply(true); }
	static constexpr FReply Unhandled() { return FReply(false); }

	constexpr bool IsEventHandled() const { return bHandled; }

private:
	explicit constexpr FReply(bool bInHandled)
		: bHandled(bInHandled)
	{
	}

	bool bHandled;
};
