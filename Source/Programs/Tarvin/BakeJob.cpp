// SPDX-License-Identifier: MIT
#include "BakeJob.h"

#include "BakePlan.h"
#include "Editor/EditorEngine.h"
#include "Engine/StaticMeshComponent.h"
#include "HostSession.h"
#include "NodeNames.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneLimits.h"
#include "TarvinSelectionAction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <set>

int FBakeReport::Count(ENodeOutcome Outcome) const
{
	return int(std::ranges::count_if(Nodes, [Outcome](const FNodeReport& Node) { return Node.Outcome == Outcome; }));
}

namespace
{
/// Parents may have to be baked before their children can be: one command for each level at the most.
constexpr int MaxCommands = 4096;

class FBakeJob
{
public:
	FBakeJob(const FBakeOptions& InOptions, FBakeReport& InReport)
		: Options(InOptions)
		, Report(InReport)
	{
	}

	void Run()
	{
		TSceneResult<std::unique_ptr<FScene>> Loaded =
			FScene::Load(Report.Input, GEditor->GetEditorWorldContext().World());
		if (!Loaded)
		{
			return Fail(ExitUnreadable, Loaded.Error().Message);
		}
		Scene = Loaded.Take();
		const FNodeChoice Choice = ChooseNodes(*Scene->Document(), Options.Select);
		if (Choice.Unmatched)
		{
			return Fail(ExitUsage, "--select '" + *Choice.Unmatched + "' matches no node of " + Report.Input);
		}
		bWanted = Choice.bChosen;
		bDone.assign(bWanted.size(), false);
		Reasons.assign(bWanted.size(), {});
		Outcomes.assign(bWanted.size(), ENodeOutcome::NotSelected);
		Session.AnswerWith(
			Options.bDryRun && Options.Shared == ESharedAnswer::Ask ? ESharedAnswer::Duplicate : Options.Shared);

		const FSceneJudge Judge(*Scene);
		if (!RunCommands(Judge))
		{
			return;
		}
		Conclude(Judge);
		if (!Options.bDryRun && !Save())
		{
			return;
		}
		SetExitCode();
	}

private:
	void Fail(EExitCode Code, const std::string& Sentence)
	{
		Report.Exit = Code;
		Report.Error = Sentence;
	}

	bool RunCommands(const FSceneJudge& Judge)
	{
		const FBakePlanner Planner(*Scene, Judge, Options);
		for (int Command = 0; Command < MaxCommands; ++Command)
		{
			const FBakeBatch Batch = Planner.Next(Judge.Judge(Options.Command, StillWanted()), bWanted, bDone);
			for (const auto& [Node, Reason] : Batch.Refused)
			{
				Settle(Node, ENodeOutcome::LeftOut, Reason);
			}
			if (Batch.Nodes.empty())
			{
				return true;
			}
			if (!Decode(Batch.Nodes))
			{
				return false;
			}
			if (!HasRoomForCopies(Batch.Nodes))
			{
				return false;
			}
			if (!LeaveOutOfRange(Batch.Nodes))
			{
				RunCommand(Batch.Nodes);
			}
		}
		return true;
	}

	/// Nodes that are settled and were not baked stay where they are: their parents must hold them.
	std::vector<bool> StillWanted() const
	{
		std::vector<bool> bStill = bWanted;
		for (std::size_t Node = 0; Node < bStill.size(); ++Node)
		{
			bStill[Node] = bStill[Node] && !bDone[Node];
		}
		return bStill;
	}

	/// What cannot be decoded must be known before anything changes.
	bool Decode(const std::vector<FGltfIndex>& Nodes)
	{
		std::set<FGltfIndex> Meshes;
		for (const FGltfIndex Node : Nodes)
		{
			Meshes.insert(Scene->Document()->Node(Node).Mesh);
		}
		Scene->ReadAhead(Meshes);
		for (const FGltfIndex Node : Nodes)
		{
			const FGltfIndex Mesh = Scene->Document()->Node(Node).Mesh;
			const UStaticMesh* const Asset = AssetOf(*Scene, Node);
			for (int32 Lod = 0; Lod < Asset->GetNumSourceModels(); ++Lod)
			{
				if (Asset->IsMeshDescriptionValid(Lod) && !Asset->GetMeshDescription(Lod))
				{
					return Undecodable(Scene->AssetMeshes(Mesh).Lods[Lod]);
				}
			}
			if (Asset->IsHiResMeshDescriptionValid() && !Asset->GetHiResMeshDescription())
			{
				return Undecodable(Scene->AssetMeshes(Mesh).HiRes);
			}
		}
		if (const FSceneStatus Status = Scene->Document()->CheckIntact(); !Status)
		{
			Fail(ExitUnreadable, Status.Error().Message);
			return false;
		}
		return true;
	}

	/// A mesh is copied once for each rotation and scale that its nodes have; few bytes of nodes can ask for much.
	bool HasRoomForCopies(const std::vector<FGltfIndex>& Nodes)
	{
		const bool bMayCopy = Options.Shared == ESharedAnswer::Duplicate || Options.Shared == ESharedAnswer::Ask;
		if (Options.Command != ESceneCommand::BakeTransform || !bMayCopy)
		{
			return true;
		}
		std::set<std::pair<const UStaticMesh*, std::array<int64, 7>>> Shapes;
		std::set<const UStaticMesh*> Assets;
		std::uint64_t Copied = 0;
		for (const FGltfIndex Node : Nodes)
		{
			const UStaticMesh* const Asset = AssetOf(*Scene, Node);
			const bool bFirst = Assets.insert(Asset).second;
			if (Shapes.emplace(Asset, RoughShape(Scene->Node(Node).Component->GetComponentTransform())).second &&
				!bFirst)
			{
				for (int32 Lod = 0; Lod < Asset->GetNumSourceModels(); ++Lod)
				{
					Copied += std::uint64_t(Asset->GetSourceModel(Lod).GetBulkData()->NumVertices()) *
							  SceneLimits::CopiedBytesPerVertex;
				}
			}
		}
		std::error_code Unknown;
		const std::uintmax_t FileBytes = std::filesystem::file_size(Report.Input, Unknown);
		const std::uint64_t Limit = SceneLimits::CopiedBytes(Unknown ? 0 : FileBytes);
		if (Copied > Limit)
		{
			Fail(ExitUnreadable, "Cannot bake \"" + PrintableText(Report.Input) +
									 "\": the copies of meshes that its nodes need would take more than " +
									 std::to_string(Limit / SceneLimits::MiB) + " MiB.");
		}
		return Copied <= Limit;
	}

	/// Rotation and scale in steps so large that what is baked alike is not told apart.
	static std::array<int64, 7> RoughShape(const FTransform& World)
	{
		constexpr double Steps = 256.0;
		const FQuat Turn = World.GetRotation();
		const FVector Scale = World.GetScale3D();
		const double Side = Turn.W < 0.0 ? -Steps : Steps;
		const auto Step = [](double Value) { return int64(std::llround(std::clamp(Value, -1e15, 1e15))); };
		return {Step(Turn.X * Side), Step(Turn.Y * Side), Step(Turn.Z * Side), Step(Turn.W * Side),
			Step(Scale.X * Steps), Step(Scale.Y * Steps), Step(Scale.Z * Steps)};
	}

	/// Settles the nodes whose vertices would leave the range in which single precision has all its digits. Returns
	/// whether there were any: then the next command must be chosen anew.
	bool LeaveOutOfRange(const std::vector<FGltfIndex>& Nodes)
	{
		// Moving a pivot may double a coordinate, turning and rounding take a little more.
		constexpr double Largest = double(std::numeric_limits<float>::max()) / 4.0;
		constexpr double Smallest =
			double(std::numeric_limits<float>::min()) / double(std::numeric_limits<float>::epsilon());
		std::map<const UStaticMesh*, double> Sizes;
		bool bAny = false;
		for (const FGltfIndex Node : Nodes)
		{
			const UStaticMesh* const Asset = AssetOf(*Scene, Node);
			const auto [Known, bNew] = Sizes.try_emplace(Asset, 0.0);
			Known->second = bNew ? LargestCoordinate(*Asset) : Known->second;
			const double Size = Known->second;
			const FVector Scale = Scene->Node(Node).Component->GetComponentTransform().GetScale3D().GetAbs();
			const bool bTooLarge = Size * std::max({1.0, Scale.X, Scale.Y, Scale.Z}) > Largest;
			const bool bTooSmall = Size > 0.0 && Size * std::min({1.0, Scale.X, Scale.Y, Scale.Z}) < Smallest;
			if (bTooLarge || bTooSmall)
			{
				Settle(Node, ENodeOutcome::LeftOut, "its vertices would be out of the range of their numbers");
				bAny = true;
			}
		}
		return bAny;
	}

	/// Of all vertices of all levels; NaN is none.
	static double LargestCoordinate(const UStaticMesh& Asset)
	{
		double Largest = 0.0;
		const auto Take = [&Largest](const FMeshDescription* Description)
		{
			const FBox Box = Description ? Description->ComputeBoundingBox() : FBox();
			if (Box.IsValid)
			{
				Largest = std::max({Largest, Box.Min.GetAbs().GetMax(), Box.Max.GetAbs().GetMax()});
			}
		};
		for (int32 Lod = 0; Lod < Asset.GetNumSourceModels(); ++Lod)
		{
			Take(Asset.GetMeshDescription(Lod));
		}
		Take(Asset.GetHiResMeshDescription());
		return Largest;
	}

	bool Undecodable(FGltfIndex Mesh)
	{
		const auto Result = Scene->MeshData(Mesh)->TryDecode();
		Fail(ExitUnreadable,
			Result ? "Cannot read " + Report.Input + ": it changed while it was read." : Result.Error().Message);
		return false;
	}

	struct FBefore
	{
		UStaticMesh* Asset;
		TSharedPtr<const FMeshBulkData> Data;
	};

	void RunCommand(const std::vector<FGltfIndex>& Nodes)
	{
		GEditor->SelectNone();
		std::vector<FBefore> Before;
		for (const FGltfIndex Node : Nodes)
		{
			GEditor->SelectActor(Scene->Node(Node).Actor, true);
			UStaticMesh* const Asset = AssetOf(*Scene, Node);
			Before.push_back({Asset, SourceOf(*Asset)});
		}
		if (Options.Command == ESceneCommand::BakeTransform)
		{
			FTarvinSelectionAction::ExecuteFromEditorSelection();
		}
		else
		{
			FTarvinSelectionAction::ExecuteSetPivot(Options.Position);
		}
		// The program takes nothing back: what the history keeps would only cost memory.
		GEditor->Trans->Reset();
		const std::vector<std::string> Warnings = Session.TakeWarnings();
		Report.Warnings.insert(Report.Warnings.end(), Warnings.begin(), Warnings.end());
		for (std::size_t Index = 0; Index < Nodes.size(); ++Index)
		{
			UStaticMesh* const Asset = AssetOf(*Scene, Nodes[Index]);
			const bool bBaked = Asset != Before[Index].Asset || SourceOf(*Asset) != Before[Index].Data;
			const std::string Reason =
				Options.Shared == ESharedAnswer::Skip ? "its asset is shared" : "its asset was left unbaked";
			Settle(Nodes[Index], bBaked ? ENodeOutcome::Baked : ENodeOutcome::NotBaked, bBaked ? "" : Reason);
		}
	}

	static TSharedPtr<const FMeshBulkData> SourceOf(const UStaticMesh& Asset)
	{
		return Asset.IsMeshDescriptionValid(0) ? Asset.GetSourceModel(0).GetBulkData()
											   : Asset.GetHiResSourceModel().GetBulkData();
	}

	void Settle(FGltfIndex Node, ENodeOutcome Outcome, const std::string& Reason)
	{
		bDone[std::size_t(Node)] = true;
		Outcomes[std::size_t(Node)] = Outcome;
		Reasons[std::size_t(Node)] = Reason;
	}

	/// Settles what no command could work on, and lists everything.
	void Conclude(const FSceneJudge& Judge)
	{
		const std::vector<FSceneVerdict> Verdicts = Judge.Judge(Options.Command, StillWanted());
		std::set<const UStaticMesh*> NewAssets;
		for (FGltfIndex Node = 0; Node < Scene->NumNodes(); ++Node)
		{
			const std::size_t At = std::size_t(Node);
			if (Scene->Document()->Node(Node).Mesh == NoIndex)
			{
				continue;
			}
			if (bWanted[At] && !bDone[At])
			{
				const bool bNothing = Verdicts[At].Kind == FSceneVerdict::EKind::NothingToBake;
				const bool bCandidate = Verdicts[At].Kind == FSceneVerdict::EKind::Candidate;
				Settle(Node, bNothing ? ENodeOutcome::NothingToBake : ENodeOutcome::LeftOut,
					bCandidate ? "its parent combines rotation with uneven scale" : Verdicts[At].Reason);
			}
			const UStaticMesh* const Asset = AssetOf(*Scene, Node);
			const UStaticMesh* const Loaded = Scene->MeshAsset(Scene->Document()->Node(Node).Mesh);
			const bool bNew = Asset && Asset != Loaded;
			if (bNew && NewAssets.insert(Asset).second)
			{
				Report.NewAssets.push_back(Asset->GetName().ToUtf8());
			}
			Report.Nodes.push_back({Node, NodePath(*Scene->Document(), Node),
				(Asset ? Asset : Loaded)->GetName().ToUtf8(), bNew, Outcomes[At], Reasons[At]});
		}
	}

	bool Save()
	{
		TSceneResult<FSaveReport> Saved = SaveScene(*Scene, Report.Output);
		if (!Saved)
		{
			Fail(ExitUnwritable, Saved.Error().Message);
			return false;
		}
		Report.bWritten = Saved->bWritten;
		Report.OtherFiles = Saved->FilesWritten;
		Report.MissingFiles = Saved->FilesMissing;
		return !Options.bVerify || Verify(Saved->Path);
	}

	bool Verify(const std::string& Path)
	{
		TSceneResult<std::shared_ptr<const FGltfDocument>> Written = FGltfDocument::Load(Path);
		if (!Written)
		{
			Fail(ExitDeviation, "The scene that was written cannot be read: " + Written.Error().Message);
			return false;
		}
		TSceneResult<FSceneDeviation> Deviation = CompareScenes(Scene->Document(), *Written);
		if (!Deviation)
		{
			Fail(ExitDeviation, Deviation.Error().Message);
			return false;
		}
		Report.Deviation = Deviation.Take();
		Report.Deviation->LeaveOut([this](FGltfIndex Node) { return ChangedAlong(Node); });
		return true;
	}

	/// True for a node that was not asked for and whose asset was baked in place all the same: the answer was to change
	/// it too.
	bool ChangedAlong(FGltfIndex Node) const
	{
		const FGltfIndex Mesh = Scene->Document()->Node(Node).Mesh;
		const UStaticMesh* const Asset = AssetOf(*Scene, Node);
		return Outcomes[std::size_t(Node)] == ENodeOutcome::NotSelected && Asset && Asset == Scene->MeshAsset(Mesh) &&
			   Asset->GetSourceModel(0).GetBulkData().Get() != Scene->MeshData(Mesh).Get();
	}

	void SetExitCode()
	{
		if (Report.Deviation && !Report.Deviation->IsSame(VerifyTolerance))
		{
			Report.Exit = ExitDeviation;
			return;
		}
		const bool bLeftOut = Report.Count(ENodeOutcome::LeftOut) > 0 && Options.bStrict;
		Report.Exit = Report.Count(ENodeOutcome::NotBaked) > 0 || bLeftOut ? ExitIncomplete : ExitDone;
	}

	const FBakeOptions& Options;
	FBakeReport& Report;
	FHostSession Session;
	std::unique_ptr<FScene> Scene;
	std::vector<bool> bWanted;
	std::vector<bool> bDone;
	std::vector<std::string> Reasons;
	std::vector<ENodeOutcome> Outcomes;
};
} // namespace

FBakeReport RunBakeJob(const FBakeOptions& Options, const std::string& Input, const std::string& Output)
{
	FBakeReport Report;
	Report.Input = Input;
	Report.Output = Options.bDryRun ? std::string() : Output;
	FBakeJob(Options, Report).Run();
	return Report;
}
