// SPDX-License-Identifier: MIT
#include "Support/WorldGenerators.h"

#include "TransactionFixture.h"

#include "CoreUObject/GarbageCollector.h"

#include <array>
#include <optional>

namespace
{
/// One change of a world. The numbers are counted round whatever there is at that time.
struct FEdit
{
	enum EKind : int32
	{
		Relative,
		World,
		Attach,
		Detach,
		Spawn,
		Destroy,
		Duplicate,
		AddComponent,
		DestroyComponent,
		SwapMesh,
		EditMesh,
		Label,
		NumKinds
	};
	int32 Kind = Relative;
	int32 A = 0;
	int32 B = 0;
	FTransform Place;
};

/// One thing that a user does.
struct FStep
{
	enum EWhat : int32
	{
		Commit,       ///< the edits, as one transaction
		CommitNested, ///< the same, each edit in a scope of its own
		Cancel,       ///< records everything, changes nothing, cancels
		Undo,
		Redo,
		Collect,
	};
	int32 What = Commit;
	std::vector<FEdit> Edits;
};

void showValue(const FStep& Step, std::ostream& Out)
{
	constexpr std::array<const char*, 6> Names{"commit", "commit nested", "cancel", "undo", "redo", "collect"};
	Out << Names[std::size_t(Step.What)];
	for (const FEdit& Edit : Step.Edits)
	{
		Out << " {" << Edit.Kind << " " << Edit.A << " " << Edit.B << "}";
	}
}

rc::Gen<FEdit> AnyEdit()
{
	using WorldGenerators::Index;
	return rc::gen::map(
		rc::gen::tuple(Index(FEdit::NumKinds), Index(1000), Index(1000), WorldGenerators::AnyTransform()),
		[](const std::tuple<int32, int32, int32, FTransform>& Parts) {
			return FEdit{std::get<0>(Parts), std::get<1>(Parts), std::get<2>(Parts), std::get<3>(Parts)};
		});
}

rc::Gen<FStep> AnyStep()
{
	const auto What = rc::gen::weightedElement<int32>({{5, FStep::Commit}, {2, FStep::CommitNested}, {1, FStep::Cancel},
		{4, FStep::Undo}, {3, FStep::Redo}, {2, FStep::Collect}});
	const auto Edits = rc::gen::resize(5, rc::gen::container<std::vector<FEdit>>(AnyEdit()));
	return rc::gen::map(rc::gen::pair(What, Edits),
		[](const std::pair<int32, std::vector<FEdit>>& Parts) {
			return FStep{Parts.first, Parts.second};
		});
}

template <class T>
T* Pick(const TArray<T*>& All, int32 Number)
{
	return All.IsEmpty() ? nullptr : All[Number % All.Num()];
}

/// An editor that random steps are done in, beside a plain list of the states that it went through.
class FModelledEditor
{
public:
	explicit FModelledEditor(const FTreePlan& Plan)
	{
		DestroyEditorAndAssets();
		UEditorEngine::Create();
		Meshes = {MakeUnevenMesh(TEXT("/Scene/Property/A")), MakeUnevenMesh(TEXT("/Scene/Property/B"))};
		BuildTree(World(), Plan, {Meshes[0], Meshes[1]});
		States.push_back(Now());
	}
	~FModelledEditor() { DestroyEditorAndAssets(); }
	FModelledEditor(const FModelledEditor&) = delete;
	FModelledEditor& operator=(const FModelledEditor&) = delete;

	void Do(const FStep& Step)
	{
		switch (Step.What)
		{
		case FStep::Undo:
			RC_ASSERT(GEditor->UndoTransaction() == (Place > 0));
			Place -= std::size_t(Place > 0);
			break;
		case FStep::Redo:
			RC_ASSERT(GEditor->RedoTransaction() == (Place + 1 < States.size()));
			Place += std::size_t(Place + 1 < States.size());
			break;
		case FStep::Collect:
			RC_ASSERT(CollectGarbage());
			break;
		case FStep::Cancel:
			RecordAndCancel();
			break;
		default:
			Commit(Step);
		}
		Check();
	}

private:
	static UWorld* World() { return GEditor->GetEditorWorldContext().World(); }
	FWorldState Now() const { return FWorldState(World(), {Meshes[0], Meshes[1]}); }

	static TArray<USceneComponent*> Components()
	{
		TArray<USceneComponent*> All;
		for (const AActor* Actor : World()->GetActors())
		{
			All.Append(Actor->GetComponentsOf<USceneComponent>());
		}
		return All;
	}

	void Check() const
	{
		const FWorldState State = Now();
		if (!(State == States[Place]))
		{
			RC_FAIL(States[Place].Difference(State));
		}
		for (const USceneComponent* Component : Components())
		{
			RC_ASSERT(IsWorldTransformDerived(Component));
		}
	}

	void RecordAndCancel()
	{
		FEditScope Scope;
		World()->Modify();
		for (USceneComponent* Component : Components())
		{
			Component->Modify();
			Component->GetOwner()->Modify();
		}
		Scope.Cancel();
	}

	void Commit(const FStep& Step)
	{
		bool bRecorded = false;
		{
			const FEditScope Scope;
			for (const FEdit& Edit : Step.Edits)
			{
				std::optional<FEditScope> Inner;
				if (Step.What == FStep::CommitNested)
				{
					Inner.emplace();
				}
				bRecorded |= Apply(Edit);
			}
		}
		if (bRecorded)
		{
			States.erase(States.begin() + std::ptrdiff_t(Place) + 1, States.end());
			States.push_back(Now());
			++Place;
		}
	}

	/// Returns whether anything was recorded.
	bool Apply(const FEdit& Edit)
	{
		if (Edit.Kind == FEdit::Spawn)
		{
			MakeActor(World(), Meshes[std::size_t(Edit.A) % 2], Edit.Place, Pick(Components(), Edit.B));
			return true;
		}
		if (Edit.Kind == FEdit::EditMesh)
		{
			MoveFirstVertex(Meshes[std::size_t(Edit.A) % 2], FVector3f(Edit.Place.GetTranslation()));
			return true;
		}
		USceneComponent* const Component = Pick(Components(), Edit.A);
		return Component && ApplyTo(Component, Edit);
	}

	bool ApplyTo(USceneComponent* Component, const FEdit& Edit)
	{
		switch (Edit.Kind)
		{
		case FEdit::Relative:
			Move(Component, Edit.Place);
			return true;
		case FEdit::World:
			Component->Modify();
			Component->SetWorldTransform(Edit.Place);
			return true;
		case FEdit::Attach:
			return Component->AttachToComponent(Pick(Components(), Edit.B),
				Edit.B % 2 == 0 ? EAttachmentRule::KeepWorld : EAttachmentRule::KeepRelative);
		case FEdit::Detach:
		{
			const bool bAttached = Component->GetAttachParent() != nullptr;
			Component->DetachFromComponent();
			return bAttached;
		}
		default:
			return ApplyToActor(Component, Edit);
		}
	}

	bool ApplyToActor(USceneComponent* Component, const FEdit& Edit)
	{
		AActor* const Actor = Component->GetOwner();
		switch (Edit.Kind)
		{
		case FEdit::Destroy:
			World()->DestroyActor(Actor);
			return true;
		case FEdit::Duplicate:
			World()->DuplicateActor(Actor);
			return true;
		case FEdit::AddComponent:
			AddMeshComponent(Component, Meshes[std::size_t(Edit.B) % 2], Edit.Place);
			return true;
		case FEdit::DestroyComponent:
			Component->DetachFromComponent();
			Component->Modify();
			Component->MarkAsGarbage();
			return true;
		case FEdit::Label:
			Actor->Modify();
			Actor->SetActorLabel(FString::FromInt(Edit.B));
			return true;
		default:
			Component->Modify();
			CastChecked<UStaticMeshComponent>(Component)->SetStaticMesh(Edit.B % 3 == 0 ? nullptr : Meshes[1]);
			return true;
		}
	}

	std::array<UStaticMesh*, 2> Meshes{};
	std::vector<FWorldState> States;
	std::size_t Place = 0;
};

RC_GTEST_PROP(TransactionProperty, AnyMixOfEditsUndosRedosAndCollectionsWalksExactlyThroughTheStates, ())
{
	const FTreePlan Plan = *WorldGenerators::Tree(12);
	const std::vector<FStep> Steps = *rc::gen::container<std::vector<FStep>>(AnyStep());
	FModelledEditor Editor(Plan);
	for (const FStep& Step : Steps)
	{
		Editor.Do(Step);
	}
}
} // namespace
