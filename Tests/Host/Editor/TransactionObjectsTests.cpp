// SPDX-License-Identifier: MIT
#include "TransactionFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/ObjectIterator.h"

#include <gmock/gmock.h>

#include <malloc.h>

namespace
{
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class FTransactionOfObjects : public FTransactionTest
{
protected:
	/// Undoes, collects, and redoes, and compares with the states before and after.
	static void ExpectExact(const FWorldState& Before)
	{
		const FWorldState After(World());
		ASSERT_FALSE(Before == After);
		for (int32 Round = 0; Round < 3; ++Round)
		{
			ASSERT_TRUE(Undo());
			EXPECT_TRUE(IsSameState(Before, FWorldState(World()))) << "undo " << Round;
			ASSERT_TRUE(CollectGarbage());
			EXPECT_TRUE(IsSameState(Before, FWorldState(World()))) << "collected after undo " << Round;
			ASSERT_TRUE(Redo());
			EXPECT_TRUE(IsSameState(After, FWorldState(World()))) << "redo " << Round;
			ASSERT_TRUE(CollectGarbage());
			EXPECT_TRUE(IsSameState(After, FWorldState(World()))) << "collected after redo " << Round;
		}
	}
};

TEST_F(FTransactionOfObjects, SpawningAnActorIsTakenBackAndDoneAgain)
{
	MakeActor(World(), nullptr);
	const FWorldState Before = State();
	UStaticMeshComponent* Spawned = nullptr;
	{
		const FEditScope Scope;
		Spawned = MakeActor(World(), MakeUnevenMesh(), UnevenPlace());
		AddMeshComponent(Spawned, MakeUnevenMesh(), UnevenPlace());
	}
	ExpectExact(Before);
	EXPECT_TRUE(IsValid(Spawned));
	Undo();
	EXPECT_FALSE(IsValid(Spawned));
	EXPECT_FALSE(IsValid(Spawned->GetOwner()));
	EXPECT_EQ(GetObjectsOf<UStaticMeshComponent>().Num(), 1);
	EXPECT_EQ(World()->GetActors().Num(), 1);
}

TEST_F(FTransactionOfObjects, SpawningAnAttachedActorIsTakenBackAtTheParentToo)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, UnevenPlace());
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		MakeActor(World(), nullptr, UnevenPlace(), Parent);
	}
	ExpectExact(Before);
	Undo();
	EXPECT_TRUE(Parent->GetAttachChildren().IsEmpty());
}

TEST_F(FTransactionOfObjects, DestroyingAnActorIsTakenBackWithItsAttachments)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, UnevenPlace());
	UStaticMeshComponent* const Middle = MakeActor(World(), MakeUnevenMesh(), UnevenPlace(), Parent);
	UStaticMeshComponent* const Inner = AddMeshComponent(Middle, MakeUnevenMesh(), UnevenPlace());
	UStaticMeshComponent* const Below = MakeActor(World(), nullptr, UnevenPlace(), Inner);
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		World()->DestroyActor(Middle->GetOwner());
	}
	ExpectExact(Before);
	Undo();
	EXPECT_TRUE(IsValid(Middle));
	EXPECT_EQ(Below->GetAttachParent(), Inner);
	EXPECT_THAT(Parent->GetAttachChildren(), ElementsAre(Middle));
	EXPECT_TRUE(IsWorldTransformDerived(Below));
}

TEST_F(FTransactionOfObjects, DuplicatingAnActorIsTakenBackAtTheParentToo)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, UnevenPlace());
	UStaticMeshComponent* const Root = MakeActor(World(), MakeUnevenMesh(), UnevenPlace(), Parent);
	AddMeshComponent(Root, MakeUnevenMesh(), UnevenPlace());
	const FWorldState Before = State();
	AActor* Copy = nullptr;
	{
		const FEditScope Scope;
		Copy = World()->DuplicateActor(Root->GetOwner());
	}
	ExpectExact(Before);
	Undo();
	EXPECT_FALSE(IsValid(Copy));
	EXPECT_THAT(Parent->GetAttachChildren(), ElementsAre(Root));
	EXPECT_EQ(GetObjectsOf<UStaticMeshComponent>().Num(), 3);
}

TEST_F(FTransactionOfObjects, AttachingAndDetachingAreTakenBackAtBothEnds)
{
	UStaticMeshComponent* const A = MakeActor(World(), nullptr, UnevenPlace());
	UStaticMeshComponent* const B = MakeActor(World(), nullptr, UnevenPlace());
	UStaticMeshComponent* const Child = MakeActor(World(), nullptr, UnevenPlace(), A);
	MakeActor(World(), nullptr, UnevenPlace(), Child);
	const FWorldState Before = State();
	{
		const FEditScope Scope;
		Child->AttachToComponent(B, EAttachmentRule::KeepWorld);
	}
	const FWorldState Attached = State();
	{
		const FEditScope Scope;
		Child->DetachFromComponent();
	}
	ExpectExact(Attached);
	Undo();
	Undo();
	EXPECT_TRUE(IsSameState(Before, State()));
	EXPECT_THAT(A->GetAttachChildren(), ElementsAre(Child));
	EXPECT_TRUE(B->GetAttachChildren().IsEmpty());
}

TEST_F(FTransactionOfObjects, AnActorMadeAndDestroyedInOneTransactionNeverShowsUp)
{
	MakeActor(World(), nullptr);
	const FWorldState Before = State();
	const UStaticMeshComponent* Spawned = nullptr;
	{
		const FEditScope Scope;
		Spawned = MakeActor(World(), MakeUnevenMesh(), UnevenPlace());
		World()->DestroyActor(Spawned->GetOwner());
	}
	for (int32 Round = 0; Round < 3; ++Round)
	{
		ASSERT_TRUE(Undo());
		EXPECT_FALSE(IsValid(Spawned));
		EXPECT_TRUE(IsSameState(Before, State()));
		CollectGarbage();
		ASSERT_TRUE(Redo());
		EXPECT_FALSE(IsValid(Spawned));
		EXPECT_TRUE(IsSameState(Before, State()));
		CollectGarbage();
	}
}

TEST_F(FTransactionOfObjects, AComponentDestroyedButKeptByTheBufferIsNotIterated)
{
	UStaticMeshComponent* const Root = MakeActor(World(), nullptr);
	UStaticMeshComponent* const Inner = AddMeshComponent(Root, MakeUnevenMesh());
	{
		const FEditScope Scope;
		Root->GetOwner()->Modify();
		Inner->Modify();
		Inner->MarkAsGarbage();
	}
	EXPECT_THAT(GetObjectsOf<UStaticMeshComponent>(), ElementsAre(Root));
	CollectGarbage();
	EXPECT_THAT(GetObjectsOf<UStaticMeshComponent>(), ElementsAre(Root));
	EXPECT_THAT(Root->GetOwner()->GetComponents(), ElementsAre(Root));
	Undo();
	EXPECT_THAT(GetObjectsOf<UStaticMeshComponent>(), UnorderedElementsAre(Root, Inner));
	EXPECT_TRUE(IsValid(Inner->GetStaticMesh()));
}

TEST_F(FTransactionOfObjects, ObjectsOfTransactionsThatWereDroppedAreCollected)
{
	TObjectPtr<UStaticMeshComponent> Spawned;
	{
		const FEditScope Scope;
		Spawned = MakeActor(World(), nullptr);
	}
	Undo();
	CollectGarbage();
	ASSERT_NE(Spawned.Get(), nullptr);
	UStaticMeshComponent* const Other = MakeActor(World(), nullptr);
	{
		const FEditScope Scope;
		Move(Other, UnevenPlace());
	}
	CollectGarbage();
	EXPECT_EQ(Spawned.Get(), nullptr);
}

TEST_F(FTransactionOfObjects, AnAssetThatOnlyTheBufferReferencesIsKept)
{
	UStaticMeshComponent* const Component = MakeActor(World(), MakeUnevenMesh());
	const TObjectPtr<UStaticMesh> Old = Component->GetStaticMesh();
	{
		const FEditScope Scope;
		Component->Modify();
		Component->SetStaticMesh(nullptr);
	}
	CollectGarbage();
	ASSERT_NE(Old.Get(), nullptr);
	Undo();
	EXPECT_EQ(Component->GetStaticMesh(), Old);
	EXPECT_EQ(LocalPositions(Old).Num(), 8);
}

TEST_F(FTransactionOfObjects, RecordingATenMillionVertexMeshCopiesNothing)
{
	UStaticMesh* const Mesh = MakeLargeMesh(10000000);
	MakeActor(World(), Mesh);
	const TSharedPtr<const FMeshBulkData> Bulk = Mesh->GetSourceModel(0).GetBulkData();
	const int32 NumShares = Bulk.GetSharedReferenceCount();
	const auto BytesInUse = []()
	{
		const struct mallinfo2 Info = mallinfo2();
		return Info.uordblks + Info.hblkhd;
	};
	const auto Before = BytesInUse();
	{
		const FEditScope Scope;
		Mesh->ModifyMeshDescription(0);
	}
	EXPECT_LT(BytesInUse(), Before + 1000000);
	EXPECT_EQ(Bulk.GetSharedReferenceCount(), NumShares + 1);
	EXPECT_EQ(Mesh->GetSourceModel(0).GetBulkData(), Bulk);
	EXPECT_GE(Transactions().MemoryBytes(), 120000000u);
	Undo();
	EXPECT_EQ(Mesh->GetSourceModel(0).GetBulkData(), Bulk);
	EXPECT_LT(BytesInUse(), Before + 1000000);
}

class FMemoryLimit : public FTransactionTest
{
protected:
	/// Gives the mesh another geometry, which a transaction then keeps.
	static void Replace(UStaticMesh* Mesh, float Offset)
	{
		const FEditScope Scope;
		MoveFirstVertex(Mesh, FVector3f(Offset, 0.f, 0.f));
	}
};

TEST_F(FMemoryLimit, DropsTheOldestTransactionsAndNeverTheNewest)
{
	UStaticMesh* const Mesh = MakeLargeMesh(10000);
	MakeActor(World(), Mesh);
	Replace(Mesh, 1.f);
	const uint64 One = Transactions().MemoryBytes();
	EXPECT_GE(One, 120000u);
	for (int32 Step = 2; Step <= 5; ++Step)
	{
		Replace(Mesh, float(Step));
	}
	EXPECT_EQ(Stacks(), std::make_pair(5, 0));
	Transactions().SetMemoryLimit(3 * One + One / 2);
	EXPECT_EQ(Stacks(), std::make_pair(3, 0));
	Replace(Mesh, 6.f);
	EXPECT_EQ(Stacks(), std::make_pair(3, 0));
	EXPECT_LE(Transactions().MemoryBytes(), Transactions().GetMemoryLimit());
	Undo();
	EXPECT_EQ(LocalPositions(Mesh)[0], FVector(5, 0, 0));
	Redo();
	Transactions().SetMemoryLimit(1);
	EXPECT_EQ(Stacks(), std::make_pair(1, 0));
	EXPECT_TRUE(Undo());
	EXPECT_EQ(LocalPositions(Mesh)[0], FVector(5, 0, 0));
}

TEST_F(FMemoryLimit, ChargesWhatSeveralTransactionsShareOnce)
{
	UStaticMesh* const Mesh = MakeLargeMesh(10000);
	UStaticMeshComponent* const Component = MakeActor(World(), Mesh);
	for (int32 Step = 0; Step < 10; ++Step)
	{
		const FEditScope Scope;
		Mesh->Modify();
		Move(Component, FTransform(FVector(Step, 0, 0)));
	}
	EXPECT_GE(Transactions().MemoryBytes(), 120000u);
	EXPECT_LT(Transactions().MemoryBytes(), 200000u);
}
} // namespace
