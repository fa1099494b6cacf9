// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "Editor/EditorEngine.h"
#include "Engine/BodySetup.h"
#include "HostSession.h"
#include "JsonReport.h"
#include "NodeNames.h"
#include "SceneIO/JsonWrite.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneSpace.h"

#include <cstdio>

namespace
{
/// A node as it is told of: names, its place in the world, and what a bake would do with it.
struct FNodeInfo
{
	FGltfIndex Node = NoIndex;
	FGltfIndex Mesh = NoIndex;
	std::string Path;
	FTransform World;
	const char* Outcome = "noMesh";
	std::string Reason;
};

const char* OutcomeOf(FSceneVerdict::EKind Kind)
{
	switch (Kind)
	{
	case FSceneVerdict::EKind::Candidate:
		return "candidate";
	case FSceneVerdict::EKind::NothingToBake:
		return "nothingToBake";
	case FSceneVerdict::EKind::LeftOut:
		return "leftOut";
	default:
		return "noMesh";
	}
}

/// Bakes go from parents to children: the parent that is in a node's way will be even by then, if it is baked itself.
bool WaitsForItsParent(const FGltfDocument& Document, const std::vector<FSceneVerdict>& Verdicts, FGltfIndex Node)
{
	while (Node != NoIndex && Verdicts[std::size_t(Node)].Reason == UnevenParentReason)
	{
		Node = Document.Node(Node).Parent;
	}
	return Node != NoIndex && Verdicts[std::size_t(Node)].Kind == FSceneVerdict::EKind::Candidate;
}

std::vector<FNodeInfo> CollectNodes(const FScene& Scene)
{
	const FSceneJudge Judge(Scene);
	const std::vector<FSceneVerdict> Verdicts =
		Judge.Judge(ESceneCommand::BakeTransform, std::vector<bool>(std::size_t(Scene.NumNodes()), true));
	const std::vector<FMatrix> Worlds = Judge.WorldMatrices();
	std::vector<FNodeInfo> Infos;
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		const FSceneVerdict Verdict = WaitsForItsParent(*Scene.Document(), Verdicts, Node)
										  ? FSceneVerdict{FSceneVerdict::EKind::Candidate, {}}
										  : Verdicts[std::size_t(Node)];
		Infos.push_back({Node, Scene.Document()->Node(Node).Mesh, NodePath(*Scene.Document(), Node),
			DecomposeMatrix(Worlds[std::size_t(Node)]).Transform, OutcomeOf(Verdict.Kind), Verdict.Reason});
	}
	return Infos;
}

int CountUsers(const std::vector<FNodeInfo>& Nodes, FGltfIndex Mesh)
{
	int Users = 0;
	for (const FNodeInfo& Node : Nodes)
	{
		Users += Node.Mesh == Mesh ? 1 : 0;
	}
	return Users;
}

int CountShapes(const UStaticMesh& Asset)
{
	return Asset.GetBodySetup() ? Asset.GetBodySetup()->AggGeom.GetElementCount() : 0;
}

std::string MeshJson(const FScene& Scene, FGltfIndex Mesh, int Users)
{
	const UStaticMesh& Asset = *Scene.MeshAsset(Mesh);
	FJsonObject Object;
	Object.Integer("mesh", Mesh).String("asset", Asset.GetName().ToUtf8()).Integer("users", Users);
	Object.Integer("vertices", Scene.MeshData(Mesh)->GetLayout().NumSlots)
		.Integer("levels", Asset.GetNumSourceModels());
	Object.Bool("hiRes", Asset.IsHiResMeshDescriptionValid()).Integer("sockets", Asset.Sockets.Num());
	return Object.Integer("collisionShapes", CountShapes(Asset)).Text();
}

std::string NodeJson(const FNodeInfo& Node)
{
	FJsonObject Object;
	Object.Integer("node", Node.Node).String("path", Node.Path);
	if (Node.Mesh != NoIndex)
	{
		Object.Integer("mesh", Node.Mesh);
	}
	Object.Raw("translation", JsonWrite::Array(SceneSpace::PointToFile(Node.World.GetTranslation())))
		.Raw("rotation", JsonWrite::Array(SceneSpace::RotationToFile(Node.World.GetRotation())))
		.Raw("scale", JsonWrite::Array(SceneSpace::ScaleToFile(Node.World.GetScale3D())))
		.String("bake", Node.Outcome);
	if (!Node.Reason.empty())
	{
		Object.String("reason", Node.Reason);
	}
	return Object.Text();
}

std::string Line(const FNodeInfo& Node)
{
	const auto Translation = SceneSpace::PointToFile(Node.World.GetTranslation());
	const auto Scale = SceneSpace::ScaleToFile(Node.World.GetScale3D());
	const FRotator Turn = Node.World.GetRotation().Rotator();
	const FString Numbers = FString::Printf(TEXT("at (%.3f %.3f %.3f) scale (%.3f %.3f %.3f) turned (%.1f %.1f %.1f)"),
		Translation[0], Translation[1], Translation[2], Scale[0], Scale[1], Scale[2], Turn.Pitch, Turn.Yaw, Turn.Roll);
	const std::string Mesh = Node.Mesh == NoIndex ? "" : " mesh " + std::to_string(Node.Mesh);
	const std::string Reason = Node.Reason.empty() ? "" : ": " + PrintableText(Node.Reason);
	return "  " + std::to_string(Node.Node) + " '" + PrintableText(Node.Path) + "'" + Mesh + " " + Numbers.ToUtf8() +
		   (Node.Mesh == NoIndex ? "" : std::string(" -- ") + Node.Outcome) + Reason + "\n";
}
} // namespace

EExitCode RunInfo(const std::string& Input, bool bJson)
{
	const FHostSession Session;
	TSceneResult<std::unique_ptr<FScene>> Loaded = FScene::Load(Input, GEditor->GetEditorWorldContext().World());
	if (!Loaded)
	{
		if (bJson)
		{
			std::puts(JsonAnswer("info", {FJsonObject()
												 .String("input", Input)
												 .Integer("exitCode", ExitUnreadable)
												 .String("error", Loaded.Error().Message)
												 .Text()})
						  .c_str());
		}
		std::fprintf(stderr, "tarvin: %s\n", PrintableText(Loaded.Error().Message, 2000).c_str());
		return ExitUnreadable;
	}
	const FScene& Scene = **Loaded;
	const std::vector<FNodeInfo> Nodes = CollectNodes(Scene);
	std::vector<std::string> NodeTexts;
	std::vector<std::string> MeshTexts;
	for (const FNodeInfo& Node : Nodes)
	{
		NodeTexts.push_back(bJson ? NodeJson(Node) : Line(Node));
	}
	for (FGltfIndex Mesh = 0; Mesh < FGltfIndex(Scene.Document()->Model().Meshes.size()); ++Mesh)
	{
		const int Users = CountUsers(Nodes, Mesh);
		const UStaticMesh& Asset = *Scene.MeshAsset(Mesh);
		MeshTexts.push_back(bJson ? MeshJson(Scene, Mesh, Users)
								  : "  " + std::to_string(Mesh) + " '" + PrintableText(Asset.GetName().ToUtf8()) +
										"' " + std::to_string(Users) + " user(s), " +
										std::to_string(Scene.MeshData(Mesh)->GetLayout().NumSlots) + " vertices, " +
										std::to_string(Asset.GetNumSourceModels()) + " level(s), " +
										std::to_string(Asset.Sockets.Num()) + " socket(s), " +
										std::to_string(CountShapes(Asset)) + " collision shape(s)\n");
	}
	if (bJson)
	{
		std::puts(JsonAnswer("info", {FJsonObject()
											 .String("input", Input)
											 .Integer("exitCode", ExitDone)
											 .Raw("nodes", JsonArray(NodeTexts))
											 .Raw("meshes", JsonArray(MeshTexts))
											 .Text()})
					  .c_str());
		return ExitDone;
	}
	std::printf(
		"%s: %zu node(s), %zu mesh(es)\nNodes\n", PrintableText(Input).c_str(), NodeTexts.size(), MeshTexts.size());
	for (const std::string& Text : NodeTexts)
	{
		std::fputs(Text.c_str(), stdout);
	}
	std::puts("Meshes");
	for (const std::string& Text : MeshTexts)
	{
		std::fputs(Text.c_str(), stdout);
	}
	return ExitDone;
}
