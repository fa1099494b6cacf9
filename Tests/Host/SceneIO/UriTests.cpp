// SPDX-License-Identifier: MIT
#include "SceneIO/Base64.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneUri.h"
#include "TempFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace
{
std::string PathOf(std::string_view Uri)
{
	const SceneUri::FTarget Target = SceneUri::Parse(Uri);
	return Target.Kind == SceneUri::EKind::Relative ? Target.Path : "refused: " + Target.Why;
}
}

TEST(SceneUri, RelativePathsAreDecodedAndNormalised)
{
	EXPECT_EQ(PathOf("a.bin"), "a.bin");
	EXPECT_EQ(PathOf("./x/../textures//a%20b.png"), "textures/a b.png");
	EXPECT_EQ(PathOf("100%.bin"), "100%.bin");
	EXPECT_EQ(PathOf("%C3%A9\xC3\xA9.bin"), "\xC3\xA9\xC3\xA9.bin");
}

TEST(SceneUri, NothingLeadsOutOfTheFolder)
{
	EXPECT_EQ(PathOf("../a.bin"), "refused: leads out of the scene's folder");
	EXPECT_EQ(PathOf("a/../../b.bin"), "refused: leads out of the scene's folder");
	EXPECT_EQ(PathOf("%2e%2e/a.bin"), "refused: leads out of the scene's folder");
	EXPECT_EQ(PathOf("/etc/passwd"), "refused: is absolute; only files below the scene's folder are read");
	EXPECT_EQ(PathOf("%2Fetc/passwd"), "refused: is absolute; only files below the scene's folder are read");
	EXPECT_EQ(PathOf("..\\a.bin"), "refused: holds a backslash; folders are separated by slashes");
	EXPECT_EQ(PathOf("a%00.bin"), "refused: holds a NUL character");
	EXPECT_EQ(PathOf("."), "refused: names no file");
}

TEST(SceneUri, RemoteAndSchemedUrisAreRefused)
{
	const std::string Refused = "refused: names a scheme or a drive; only files below the scene's folder are read";
	EXPECT_EQ(PathOf("http://example.org/a.bin"), Refused);
	EXPECT_EQ(PathOf("file:///a.bin"), Refused);
	EXPECT_EQ(PathOf("C:/a.bin"), Refused);
}

TEST(SceneUri, DataUrisGiveTheirPayload)
{
	const SceneUri::FTarget Target = SceneUri::Parse("data:application/gltf-buffer;base64,AAEC");
	EXPECT_EQ(Target.Kind, SceneUri::EKind::Data);
	EXPECT_TRUE(Target.bBase64);
	EXPECT_EQ(Target.Payload, "AAEC");
	EXPECT_EQ(SceneUri::Parse("data:nothing").Kind, SceneUri::EKind::Refused);
}

RC_GTEST_PROP(SceneUri, AnyPathComesBackFromItsUri, (const std::string& Name))
{
	RC_PRE(!Name.empty() && Name.find_first_of(std::string("/\\\0", 3)) == std::string::npos && Name != "." &&
		   Name != "..");
	RC_ASSERT(PathOf(SceneUri::FromPath("folder/" + Name)) == "folder/" + Name);
}

TEST(Base64, KnownTextsDecode)
{
	EXPECT_EQ(AsText(*Base64::Decode("TWFu")), "Man");
	EXPECT_EQ(AsText(*Base64::Decode("TWE=")), "Ma");
	EXPECT_EQ(AsText(*Base64::Decode("TQ")), "M");
	EXPECT_EQ(Base64::Encode(AsBytes("Ma")), "TWE=");
}

TEST(Base64, AnythingElseIsRefused)
{
	for (const char* const Text : {"A", "AA=A", "A?==", "AAAA=", "TWE=\n", "===="})
	{
		EXPECT_FALSE(Base64::Decode(Text).has_value()) << Text;
	}
}

RC_GTEST_PROP(Base64, AnyBytesComeBack, (const std::string& Bytes))
{
	const std::string Text = Base64::Encode(AsBytes(Bytes));
	RC_ASSERT(Base64::DecodedSize(Text) == Bytes.size());
	RC_ASSERT(AsText(*Base64::Decode(Text)) == Bytes);
}

TEST(PrintableText, ControlCharactersAndBrokenUtf8AreEscaped)
{
	EXPECT_EQ(PrintableText("a\x1B[31m\n\x7F"), "a\\x1B[31m\\x0A\\x7F");
	EXPECT_EQ(PrintableText("\xC3\xA9\xC3\xFF"), "\xC3\xA9\\xC3\\xFF");
	EXPECT_EQ(PrintableText("\xE2\x80\xAE\xC2\x9B"), "\\xE2\\x80\\xAE\\xC2\\x9B");
	EXPECT_EQ(PrintableText(std::string(300, 'x')), std::string(200, 'x') + "…");
}
