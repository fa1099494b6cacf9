// SPDX-License-Identifier: MIT
#include "TestObjects.h"

#include "CoreUObject/Package.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>

#include <vector>

namespace
{
class FPackage : public FObjectTest
{
};

TEST_F(FPackage, IsMadeOnceAndFoundByItsName)
{
	EXPECT_EQ(FindPackage(TEXT("/Scene/Once")), nullptr);
	UPackage* const Package = CreatePackage(TEXT("/Scene/Once"));
	EXPECT_EQ(CreatePackage(TEXT("/Scene/Once")), Package);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Once")), Package);
	EXPECT_NE(CreatePackage(TEXT("/Scene/once")), Package);
	EXPECT_EQ(Package->GetOuter(), nullptr);
}

TEST_F(FPackage, IsNotFoundOnceItIsCollected)
{
	CreatePackage(TEXT("/Scene/Gone"));
	CollectGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Gone")), nullptr);
}

TEST_F(FPackage, IsNotFoundOnceItIsDestroyedAndItsNameIsFree)
{
	UPackage* const Old = CreatePackage(TEXT("/Scene/Destroyed"));
	Old->MarkAsGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Destroyed")), nullptr);
	const TRooted<UPackage> New(CreatePackage(TEXT("/Scene/Destroyed")));
	EXPECT_NE(New, Old);
	CollectGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Destroyed")), New);
}

TEST_F(FPackage, IsFoundByItsNewNameOnceItIsRenamed)
{
	const TRooted<UPackage> Package(CreatePackage(TEXT("/Scene/Before")));
	Package->Rename(TEXT("/Scene/After"));
	EXPECT_EQ(FindPackage(TEXT("/Scene/Before")), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/After")), Package);
}

TEST_F(FPackage, LeavesNoTraceWhenItIsCollectedAfterARename)
{
	CreatePackage(TEXT("/Scene/Renamed"))->Rename(TEXT("/Scene/Elsewhere"));
	CollectGarbage();
	EXPECT_EQ(FindPackage(TEXT("/Scene/Renamed")), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Elsewhere")), nullptr);
	EXPECT_TRUE(IsValid(CreatePackage(TEXT("/Scene/Renamed"))));
}

TEST_F(FPackage, ListsItsAssetsOnceEachAndFindsThemByName)
{
	UPackage* const Package = CreatePackage(TEXT("/Scene/Listed"));
	UTestNode* const Rock = NewObject<UTestNode>(Package, TEXT("Rock"));
	Package->AddAsset(Rock);
	Package->AddAsset(Rock);
	EXPECT_EQ(Package->GetAssets().Num(), 1);
	EXPECT_EQ(Package->FindAsset(TEXT("Rock")), Rock);
	EXPECT_EQ(Package->FindAsset(TEXT("Tree")), nullptr);
	Rock->MarkAsGarbage();
	EXPECT_EQ(Package->FindAsset(TEXT("Rock")), nullptr);
	Rock->ClearGarbage();
	Package->RemoveAsset(Rock);
	EXPECT_TRUE(Package->GetAssets().IsEmpty());
}

TEST_F(FPackage, RefusesAssetsThatLieElsewhere)
{
	const FThrowingAssertions Throwing;
	UPackage* const Package = CreatePackage(TEXT("/Scene/Strict"));
	EXPECT_THROW(Package->AddAsset(NewObject<UTestNode>()), FAssertionFailed);
	EXPECT_THROW(Package->AddAsset(nullptr), FAssertionFailed);
}

TEST_F(FPackage, TellsWhenItsDirtyFlagChangesAndOnlyThen)
{
	std::vector<UPackage*> Told;
	const FDelegateHandle Handle =
		UPackage::OnDirtyChanged().AddLambda([&](UPackage* Package) { Told.push_back(Package); });
	UPackage* const Package = CreatePackage(TEXT("/Scene/Dirty"));
	UTestNode* const Asset = NewObject<UTestNode>(Package);
	EXPECT_FALSE(Package->IsDirty());
	EXPECT_TRUE(Asset->MarkPackageDirty());
	EXPECT_TRUE(Asset->MarkPackageDirty());
	EXPECT_TRUE(Package->IsDirty());
	EXPECT_THAT(Told, testing::ElementsAre(Package));
	Package->SetDirtyFlag(false);
	EXPECT_THAT(Told, testing::ElementsAre(Package, Package));
	UPackage::OnDirtyChanged().Remove(Handle);
}

TEST_F(FPackage, TransientOneIsNeverDirty)
{
	EXPECT_FALSE(NewObject<UTestNode>()->MarkPackageDirty());
	EXPECT_FALSE(GetTransientPackage()->IsDirty());
}

TEST_F(FPackage, TransientOneIsFoundAndNotMadeASecondTime)
{
	EXPECT_EQ(FindPackage(GetTransientPackage()->GetName()), GetTransientPackage());
	EXPECT_EQ(CreatePackage(GetTransientPackage()->GetName()), GetTransientPackage());
}

TEST_F(FPackage, NameSplitsIntoFolderAndOwnName)
{
	EXPECT_EQ(FPackageName::GetLongPackagePath(TEXT("/Scene/Yard/Rock")), TEXT("/Scene/Yard"));
	EXPECT_EQ(FPackageName::GetShortName(TEXT("/Scene/Yard/Rock")), TEXT("Rock"));
	EXPECT_EQ(FPackageName::GetLongPackagePath(TEXT("/Rock")), TEXT(""));
	EXPECT_EQ(FPackageName::GetShortName(TEXT("/Rock")), TEXT("Rock"));
	EXPECT_EQ(FPackageName::GetLongPackagePath(TEXT("Rock")), TEXT(""));
	EXPECT_EQ(FPackageName::GetShortName(TEXT("Rock")), TEXT("Rock"));
}
} // namespace
