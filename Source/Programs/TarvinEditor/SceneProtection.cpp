// SPDX-License-Identifier: MIT
#include "SceneProtection.h"

#include "Core/Log.h"
#include "SelectionQueries.h"

#include <algorithm>

DEFINE_LOG_CATEGORY_STATIC(LogScene, Log, All)

namespace
{
/// Plug-ins see scales as uneven from 0.1 % on, and say so themselves. Ten times that is theirs to say.
constexpr double ClearlyUneven = 0.01;

bool IsClearlyUneven(const AActor* Parent)
{
	const FVector Scale = Parent ? Parent->GetActorTransform().GetScale3D().GetAbs() : FVector::OneVector;
	return Scale.GetMax() - Scale.GetMin() > ClearlyUneven * Scale.GetMax();
}
} // namespace

FSceneProtection::FSceneProtection(const FScene& InScene)
	: Scene(InScene)
	, Judge(InScene)
{
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		const USceneComponent* const Component = Scene.Node(Node).Component;
		Methods.push_back(Component ? Component->CreationMethod : EComponentCreationMethod::Native);
	}
}

FSceneProtection::~FSceneProtection()
{
	UnmarkAll();
}

void FSceneProtection::Update()
{
	UnmarkAll();
	std::vector<bool> bWanted(std::size_t(Scene.NumNodes()), false);
	const TArray<AActor*> Selected = SelectionQueries::SelectedActors();
	for (const AActor* Actor : Selected)
	{
		Unmark(*Actor);
		if (const FGltfIndex Node = Scene.NodeOf(Actor); Node != NoIndex)
		{
			bWanted[std::size_t(Node)] = true;
		}
	}
	const bool bAnyNode = std::ranges::find(bWanted, true) != bWanted.end();
	std::vector<FSceneVerdict> Bakes;
	std::vector<FSceneVerdict> Pivots;
	if (bAnyNode)
	{
		Bakes = Judge.Judge(ESceneCommand::BakeTransform, bWanted);
		Pivots = Judge.Judge(ESceneCommand::SetPivot, bWanted);
	}
	for (AActor* Actor : Selected)
	{
		const FGltfIndex Node = Scene.NodeOf(Actor);
		const FGltfIndex CopiedFrom = Scene.SourceOf(Actor);
		const std::string Reason = Node != NoIndex         ? ReasonAmong(Node, Bakes, Pivots)
								   : CopiedFrom != NoIndex ? Judge.StaticReason(CopiedFrom)
														   : std::string();
		if (!Reason.empty())
		{
			Mark(*Actor, Reason);
		}
	}
}

std::string FSceneProtection::ReasonAmong(
	FGltfIndex Node, const std::vector<FSceneVerdict>& Bakes, const std::vector<FSceneVerdict>& Pivots) const
{
	const FSceneVerdict& Bake = Bakes[std::size_t(Node)];
	const FSceneVerdict& Pivot = Pivots[std::size_t(Node)];
	if (Pivot.Kind == FSceneVerdict::EKind::LeftOut)
	{
		return Pivot.Reason;
	}
	const bool bPlugInSaysIt =
		Bake.Reason == UnevenParentReason && IsClearlyUneven(SelectionQueries::ParentOf(*Scene.Node(Node).Actor));
	return Bake.Kind == FSceneVerdict::EKind::LeftOut && !bPlugInSaysIt ? Bake.Reason : std::string();
}

void FSceneProtection::Mark(AActor& Actor, const std::string& Reason)
{
	Marks.Add(&Actor, {TWeakObjectPtr<AActor>(&Actor), Reason});
	Actor.GetRootComponent()->CreationMethod = EComponentCreationMethod::UserConstructionScript;
	HOST_LOG(
		LogScene, Log, TEXT("'%s' is left alone by plug-ins: %s."), *Actor.GetActorLabel(), *FString::FromUtf8(Reason));
}

void FSceneProtection::Unmark(const AActor& Actor)
{
	USceneComponent* const Root = Actor.GetRootComponent();
	const FGltfIndex Node = Scene.SourceOf(&Actor);
	if (Root && Node != NoIndex)
	{
		Root->CreationMethod = Methods[std::size_t(Node)];
	}
}

void FSceneProtection::UnmarkAll()
{
	for (const auto& [Key, Mark] : Marks)
	{
		if (const AActor* const Actor = Mark.Actor.Get())
		{
			Unmark(*Actor);
		}
	}
	Marks.Empty();
}

std::string FSceneProtection::ReasonFor(const AActor* Actor) const
{
	const FMark* const Mark = Marks.Find(Actor);
	return Mark && Mark->Actor.Get() == Actor ? Mark->Reason : std::string();
}
