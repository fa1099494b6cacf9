// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <locale>
#include <string>

/// While it lives, the C library and the C++ library write numbers with a decimal comma and grouping points. The test
/// fails if the locale, which the build makes (CommaLocale.src), cannot be set.
class FCommaLocale
{
public:
	FCommaLocale()
		: PreviousGlobal(std::locale::global(std::locale(std::locale(), new FCommaPunctuation)))
		, Previous(std::setlocale(LC_ALL, nullptr))
	{
		setenv("LOCPATH", TARVIN_TEST_LOCALES, 1);
		const char* const Set = std::setlocale(LC_NUMERIC, "comma");
		unsetenv("LOCPATH");
		EXPECT_STREQ(Set, "comma") << "the locale in " << TARVIN_TEST_LOCALES << " cannot be set";
		EXPECT_STREQ(std::localeconv()->decimal_point, ",");
	}
	~FCommaLocale()
	{
		std::locale::global(PreviousGlobal);
		std::setlocale(LC_ALL, Previous.c_str());
	}
	FCommaLocale(const FCommaLocale&) = delete;
	FCommaLocale& operator=(const FCommaLocale&) = delete;

private:
	class FCommaPunctuation : public std::numpunct<char>
	{
	protected:
		char do_decimal_point() const override { return ','; }
		char do_thousands_sep() const override { return '.'; }
		std::string do_grouping() const override { return "\3"; }
	};

	std::locale PreviousGlobal;
	std::string Previous;
};
