// SPDX-License-Identifier: MIT
// What the module expects of its host's objects: references, validity, iteration, names, duplication.
#include "ContractHost.h"

#include "Platform/CoreUObject.h"

#include <gmock/gmock.h>

namespace
{
using testing::Contains;
using testing::Not;

class ObjectContract : public FContractTest
{
};

TEST_F(ObjectContract, WeakReferencesAreStaleOnceTheObjectIsDestroyedAndStaleOnesAreEqual)
{
	UStaticMesh* const First = MakeMesh(TEXT("First"));
	UStaticMesh* const Second = MakeMesh(TEXT("Second"));
	const FWeakObjectPtr ToFirst(First);
	const FWeakObjectPtr ToSecond(Second);
	EXPECT_EQ(ToFirst.Get(), First);
	EXPECT_TRUE(ToFirst == FWeakObjectPtr(First));
	EXPECT_FALSE(ToFirst == ToSecond);
	First->MarkAsGarbage();
	Second->MarkAsGarbage();
	EXPECT_EQ(ToFirst.Get(), nullptr);
	EXPECT_TRUE(ToFirst == ToSecond);
	EXPECT_FALSE(IsValid(First));
	EXPECT_FALSE(IsValid(nullptr));
}

TEST_F(ObjectContract, TrackedPointersStandForTheirObjectAndMayBeNull)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	const TObjectPtr<UStaticMesh> Pointer = Rock;
	EXPECT_EQ(Pointer.Get(), Rock);
	EXPECT_EQ(TObjectPtr<UStaticMesh>().Get(), nullptr);
}

TEST_F(ObjectContract, IterationByClassGivesLiveObjectsOfSubclassesTooAndNoDefaultObjects)
{
	UStaticMeshComponent* const Plain = MakeComponent(nullptr);
	UStaticMeshComponent* const Instanced = Plain->GetOwner()->AddComponent<UInstancedStaticMeshComponent>();
	UStaticMeshComponent* const Loading = NewObject<UStaticMeshComponent>(Plain->GetOwner(), NAME_None, RF_NeedLoad);
	UStaticMeshComponent* const Gone = MakeComponent(nullptr);
	Gone->MarkAsGarbage();
	TArray<UObject*> Found;
	GetObjectsOfClass(UStaticMeshComponent::StaticClass(), Found, true, RF_ClassDefaultObject | RF_NeedLoad);
	EXPECT_THAT(Found, Contains(Plain));
	EXPECT_THAT(Found, Contains(Instanced));
	for (UObject* Other : {static_cast<UObject*>(Loading), static_cast<UObject*>(Gone),
			 UStaticMeshComponent::StaticClass()->GetDefaultObject()})
	{
		EXPECT_THAT(Found, Not(Contains(Other)));
	}
}

TEST_F(ObjectContract, AssetsKnowTheirNamePathAndPackage)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	EXPECT_EQ(Rock->GetName(), TEXT("Rock"));
	EXPECT_EQ(Rock->GetPathName(), TEXT("/Contract/Rock.Rock"));
	EXPECT_EQ(Rock->GetOutermost()->GetName(), TEXT("/Contract/Rock"));
	EXPECT_EQ(FPackageName::GetLongPackagePath(TEXT("/Contract/Rock")), TEXT("/Contract"));
}

TEST_F(ObjectContract, CopyInTheTransientPackageHasItsOwnNameStateAndInnerObjects)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	Rock->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
	UStaticMesh* const First = DuplicateObject(Rock, GetTransientPackage());
	UStaticMesh* const Second = DuplicateObject(Rock, GetTransientPackage());
	EXPECT_EQ(First->GetOutermost(), GetTransientPackage());
	EXPECT_NE(First->GetName(), Second->GetName());
	ASSERT_EQ(First->Sockets.Num(), 1);
	First->Sockets[0]->RelativeLocation = FVector(7, 8, 9);
	EXPECT_EQ(Rock->Sockets[0]->RelativeLocation, FVector(1, 2, 3));
	EXPECT_TRUE(First->IsMeshDescriptionValid(0));
}
}
