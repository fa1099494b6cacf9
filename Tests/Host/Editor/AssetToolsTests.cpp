// SPDX-License-Identifier: MIT
#include "CoreUObject/GarbageCollector.h"
#include "CoreUObject/Package.h"
#include "Editor/AssetTools.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "Support/EditorFixture.h"
#include "Support/TestMeshes.h"

#include <gtest/gtest.h>

namespace
{
class FAssetTools : public FEditorFixture
{
protected:
	FAssetTools()
		: Module(FModuleManager::Get().LoadModuleChecked<FAssetToolsModule>(TEXT("AssetTools")))
	{
	}
	~FAssetTools() override { Module.SetOverride(nullptr); }

	struct FNames
	{
		FString Package;
		FString Asset;
	};
	FNames Unique(const FString& Base, const FString& Suffix = FString())
	{
		FNames Names;
		Module.Get().CreateUniqueAssetName(Base, Suffix, Names.Package, Names.Asset);
		return Names;
	}

	FAssetToolsModule& Module;
};

TEST_F(FAssetTools, LeaveANameThatIsFreeAsItIs)
{
	const FNames Names = Unique(TEXT("/Scene/Free/Rock_Baked"));
	EXPECT_EQ(Names.Package, TEXT("/Scene/Free/Rock_Baked"));
	EXPECT_EQ(Names.Asset, TEXT("Rock_Baked"));
	EXPECT_EQ(Unique(TEXT("/Scene/Free/Rock"), TEXT("_Copy")).Package, TEXT("/Scene/Free/Rock_Copy"));
}

TEST_F(FAssetTools, NumberATakenNameFromTwoOn)
{
	MakeUnevenMesh(TEXT("/Scene/Taken/Rock"));
	EXPECT_EQ(Unique(TEXT("/Scene/Taken/Rock")).Package, TEXT("/Scene/Taken/Rock_2"));
	EXPECT_EQ(Unique(TEXT("/Scene/Taken/Rock")).Asset, TEXT("Rock_2"));
	MakeUnevenMesh(TEXT("/Scene/Taken/Rock_2"));
	EXPECT_EQ(Unique(TEXT("/Scene/Taken/Rock")).Asset, TEXT("Rock_3"));
	MakeUnevenMesh(TEXT("/Scene/Taken/Rock_4"));
	MakeUnevenMesh(TEXT("/Scene/Taken/Rock_3"));
	EXPECT_EQ(Unique(TEXT("/Scene/Taken/Rock")).Asset, TEXT("Rock_5"));
	EXPECT_EQ(Unique(TEXT("/Scene/Taken/Rock_2")).Asset, TEXT("Rock_2_2"));
}

TEST_F(FAssetTools, GiveTenThousandNamesThatAllDiffer)
{
	CreatePackage(TEXT("/Scene/Many/Rock"));
	for (int32 Number = 2; Number <= 10000; ++Number)
	{
		const FNames Names = Unique(TEXT("/Scene/Many/Rock"));
		ASSERT_EQ(Names.Package, FString::Printf(TEXT("/Scene/Many/Rock_%d"), Number));
		ASSERT_EQ(FindPackage(Names.Package), nullptr);
		CreatePackage(Names.Package);
	}
}

TEST_F(FAssetTools, NumberFromTwoOnAgainOnceTheAssetsAreGone)
{
	for (int32 Round = 0; Round < 2; ++Round)
	{
		MakeUnevenMesh(TEXT("/Scene/Gone/Rock"));
		for (const TCHAR* Name : {TEXT("Rock_2"), TEXT("Rock_3"), TEXT("Rock_4")})
		{
			const FNames Names = Unique(TEXT("/Scene/Gone/Rock"));
			EXPECT_EQ(Names.Asset, Name);
			MakeUnevenMesh(Names.Package);
		}
		DestroyEditorAndAssets();
		ASSERT_EQ(FindPackage(TEXT("/Scene/Gone/Rock")), nullptr);
		UEditorEngine::Create();
	}
}

TEST_F(FAssetTools, DuplicateAnAssetIntoADirtyPackageOfItsOwn)
{
	UStaticMesh* const Rock = MakeUnevenMesh(TEXT("/Scene/Duplicates/Rock"));
	Rock->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
	Rock->CreateBodySetup()->AggGeom.SphereElems.Add({FVector(1, 2, 3), 4.f});
	UObject* const Duplicate = Module.Get().DuplicateAsset(TEXT("Rock_Baked"), TEXT("/Scene/Duplicates"), Rock);
	UStaticMesh* const Copy = Cast<UStaticMesh>(Duplicate);
	ASSERT_NE(Copy, nullptr);
	EXPECT_EQ(Copy->GetPathName(), TEXT("/Scene/Duplicates/Rock_Baked.Rock_Baked"));
	EXPECT_EQ(FindPackage(TEXT("/Scene/Duplicates/Rock_Baked"))->FindAsset(TEXT("Rock_Baked")), Copy);
	EXPECT_TRUE(Copy->GetOutermost()->IsDirty());
	EXPECT_FALSE(Rock->GetOutermost()->IsDirty());
	EXPECT_EQ(Copy->Sockets[0]->RelativeLocation, FVector(1, 2, 3));
	EXPECT_EQ(Copy->Sockets[0]->GetOutermost(), Copy->GetOutermost());
	EXPECT_TRUE(Copy->GetBodySetup()->AggGeom == Rock->GetBodySetup()->AggGeom);
	EXPECT_EQ(Copy->GetSourceModel(0).GetBulkData(), Rock->GetSourceModel(0).GetBulkData());
	CollectGarbage();
	EXPECT_TRUE(IsValid(Copy));
}

TEST_F(FAssetTools, RefuseADuplicateThatCannotBeAndMakeNothing)
{
	UStaticMesh* const Rock = MakeUnevenMesh(TEXT("/Scene/Refused/Rock"));
	IAssetTools& Tools = Module.Get();
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("Copy"), TEXT("/Scene/Refused"), nullptr), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Refused/Copy")), nullptr);
	EXPECT_EQ(Tools.DuplicateAsset(TEXT(""), TEXT("/Scene/Refused"), Rock), nullptr);
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("A/B"), TEXT("/Scene/Refused"), Rock), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Refused/A/B")), nullptr);
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("Copy"), TEXT("Scene"), Rock), nullptr);
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("Copy"), TEXT(""), Rock), nullptr);
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("Rock"), TEXT("/Scene/Refused"), Rock), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Refused/Rock"))->GetAssets().Num(), 1);
	EXPECT_FALSE(Rock->GetOutermost()->IsDirty());
	Rock->MarkAsGarbage();
	EXPECT_EQ(Tools.DuplicateAsset(TEXT("Copy"), TEXT("/Scene/Refused"), Rock), nullptr);
	EXPECT_EQ(FindPackage(TEXT("/Scene/Refused/Copy")), nullptr);
}

/// Asset tools that refuse everything.
class FRefusingTools final : public IAssetTools
{
public:
	void CreateUniqueAssetName(const FString&, const FString&, FString& Package, FString& Asset) override
	{
		Package = TEXT("/Refused");
		Asset = TEXT("Refused");
	}
	UObject* DuplicateAsset(const FString&, const FString&, UObject*) override { return nullptr; }
};

TEST_F(FAssetTools, MayBeReplacedAndPutBack)
{
	IAssetTools& Own = Module.Get();
	FRefusingTools Refusing;
	Module.SetOverride(&Refusing);
	EXPECT_EQ(&Module.Get(), &Refusing);
	EXPECT_EQ(Unique(TEXT("/Scene/Replaced/Rock")).Package, TEXT("/Refused"));
	Module.SetOverride(nullptr);
	EXPECT_EQ(&Module.Get(), &Own);
	EXPECT_EQ(Unique(TEXT("/Scene/Replaced/Rock")).Package, TEXT("/Scene/Replaced/Rock"));
}
} // namespace
