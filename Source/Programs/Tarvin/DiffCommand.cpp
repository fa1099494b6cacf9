// SPDX-License-Identifier: MIT
#include "BakeJob.h"
#include "Commands.h"
#include "JsonReport.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneDiff.h"
#include "TextReport.h"

#include <cstdio>

namespace
{
EExitCode Unreadable(const FSceneError& Error, bool bJson)
{
	if (bJson)
	{
		std::puts(JsonAnswer(
			"diff", {FJsonObject().Integer("exitCode", ExitUnreadable).String("error", Error.Message).Text()})
					  .c_str());
	}
	std::fprintf(stderr, "tarvin: %s\n", PrintableText(Error.Message, 2000).c_str());
	return ExitUnreadable;
}
} // namespace

EExitCode RunDiff(const std::string& A, const std::string& B, bool bJson)
{
	TSceneResult<std::shared_ptr<const FGltfDocument>> DocumentA = FGltfDocument::Load(A);
	if (!DocumentA)
	{
		return Unreadable(DocumentA.Error(), bJson);
	}
	TSceneResult<std::shared_ptr<const FGltfDocument>> DocumentB = FGltfDocument::Load(B);
	if (!DocumentB)
	{
		return Unreadable(DocumentB.Error(), bJson);
	}
	TSceneResult<FSceneDeviation> Deviation = CompareScenes(*DocumentA, *DocumentB);
	if (!Deviation)
	{
		return Unreadable(Deviation.Error(), bJson);
	}
	const EExitCode Code = Deviation->IsSame(VerifyTolerance) ? ExitDone : ExitDeviation;
	if (bJson)
	{
		std::puts(JsonAnswer("diff", {FJsonObject()
											 .String("a", A)
											 .String("b", B)
											 .Integer("exitCode", Code)
											 .Raw("deviation", ToJson(*Deviation))
											 .Text()})
					  .c_str());
	}
	else
	{
		std::fputs(ToText(*Deviation).c_str(), stdout);
	}
	return Code;
}
