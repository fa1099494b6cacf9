// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <variant>

/// What went wrong with a scene's files, as one sentence that a user can read.
struct FSceneError
{
	std::string Message;
};

/// A value, or the sentence that says why there is none. Asking an error for its value ends the program.
template <typename T>
class [[nodiscard]] TSceneResult
{
public:
	TSceneResult(T InValue)
		: Content(std::in_place_index<0>, std::move(InValue))
	{
	}
	TSceneResult(FSceneError InError)
		: Content(std::in_place_index<1>, std::move(InError))
	{
	}

	bool IsOk() const { return Content.index() == 0; }
	explicit operator bool() const { return IsOk(); }

	const T& Value() const { return Checked(std::get_if<0>(&Content)); }
	T& Value() { return Checked(std::get_if<0>(&Content)); }
	T Take() { return std::move(Value()); }
	const T& operator*() const { return Value(); }
	T& operator*() { return Value(); }
	const T* operator->() const { return &Value(); }
	T* operator->() { return &Value(); }

	const FSceneError& Error() const { return Checked(std::get_if<1>(&Content)); }

private:
	template <typename P>
	static P& Checked(P* Pointer)
	{
		if (Pointer == nullptr)
		{
			std::abort();
		}
		return *Pointer;
	}

	std::variant<T, FSceneError> Content;
};

/// Done, or the sentence that says why not.
class [[nodiscard]] FSceneStatus
{
public:
	FSceneStatus() = default;
	FSceneStatus(FSceneError InError)
		: Failure(std::move(InError))
	{
	}

	bool IsOk() const { return !Failure.has_value(); }
	explicit operator bool() const { return IsOk(); }

	const FSceneError& Error() const
	{
		if (!Failure)
		{
			std::abort();
		}
		return *Failure;
	}

private:
	std::optional<FSceneError> Failure;
};
