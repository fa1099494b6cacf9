// SPDX-License-Identifier: MIT
#include "SceneProtection.h"

#include "Core/Log.h"
#include "SceneIO/SceneTree.h"
#include "SelectionQueries.h"

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
	const TArray<AActor*> Selected = SelectionQueries::SelectedActors();
	if (Selected.IsEmpty())
	{
		return;
	}
	// Of the world as it stands: copies are judged like what they were copied from, in their own places.
	const FSceneTree Tree(Scene);
	std::vector<bool> bWanted(std::size_t(Tree.Num()), false);
	for (const AActor* Actor : Selected)
	{
		Unmark(*Actor);
		if (const FGltfIndex Node = Tree.IndexOf(Actor); Node != NoIndex)
		{
			bWanted[std::size_t(Node)] = true;
		}
	}
	const std::vector<FSceneVerdict> Bakes = Judge.Judge(ESceneCommand::BakeTransform, Tree, bWanted);
	const std::vector<FSceneVerdict> Pivots = Judge.Judge(ESceneCommand::SetPivot, Tree, bWanted);
	for (AActor* Actor : Selected)
	{
		const FGltfIndex Node = Tree.IndexOf(Actor);
		const std::string Reason =
			Node == NoIndex ? std::string() : ReasonAmong(*Actor, Bakes[std::size_t(Node)], Pivots[std::size_t(Node)]);
		if (!Reason.empty())
		{
			Mark(*Actor, Reason);
		}
	}
}

std::string FSceneProtection::ReasonAmong(const AActor& Actor, const FSceneVerdict& Bake, const FSceneVerdict& Pivot)
{
	if (Pivot.Kind == FSceneVerdict::EKind::LeftOut)
	{
		return Pivot.Reason;
	}
	const bool bPlugInSaysIt = Bake.Reason == UnevenParentReason && IsClearlyUneven(SelectionQueries::ParentOf(Actor));
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
