// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Assertion.h"
#include "Core/String.h"

#include <exception>
#include <string>

/// A failed `check`, or a fatal log line, as an exception.
class FAssertionFailed : public std::exception
{
public:
	explicit FAssertionFailed(const FAssertionFailure& InFailure)
		: Failure(InFailure)
		, Text(std::string(InFailure.Expression) + " " + FString(InFailure.Message).ToUtf8())
	{
	}

	const char* what() const noexcept override { return Text.c_str(); }
	std::string Expression() const { return Failure.Expression; }
	FString Message() const { return FString(Failure.Message); }

private:
	FAssertionFailure Failure;
	std::string Text;
};

/// While it lives, a failed `check` throws FAssertionFailed instead of ending the test program.
class FThrowingAssertions
{
public:
	FThrowingAssertions()
		: Previous(SetAssertionHandler([](const FAssertionFailure& Failure) { throw FAssertionFailed(Failure); }))
	{
	}
	~FThrowingAssertions() { SetAssertionHandler(Previous); }
	FThrowingAssertions(const FThrowingAssertions&) = delete;
	FThrowingAssertions& operator=(const FThrowingAssertions&) = delete;

private:
	FAssertionHandler Previous;
};
