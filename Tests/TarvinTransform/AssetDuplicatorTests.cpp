// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "CoreUObject/Package.h"
#include "Editor/AssetTools.h"
#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "Host/MeshDescription/MeshShapes.h"
#include "TarvinAssetDuplicator.h"

namespace
{
/// Asset tools that write down what they are asked, and answer what they are told to.
class FAskedAssetTools final : public IAssetTools
{
public:
	FAskedAssetTools() { Module().SetOverride(this); }
	~FAskedAssetTools() override { Module().SetOverride(nullptr); }

	void CreateUniqueAssetName(
		const FString& Base, const FString& Suffix, FString& OutPackage, FString& OutAsset) override
	{
		Asked.push_back(Utf8(Base) + "|" + Utf8(Suffix));
		OutPackage = TEXT("/Elsewhere/Chosen");
		OutAsset = TEXT("Chosen");
	}
	UObject* DuplicateAsset(const FString& Name, const FString& Path, UObject* Original) override
	{
		Asked.push_back(Utf8(Name) + "|" + Utf8(Path) + "|" + Utf8(Original->GetName()));
		return Answer;
	}

	UObject* Answer = nullptr;
	std::vector<std::string> Asked;

private:
	static FAssetToolsModule& Module()
	{
		return FModuleManager::Get().LoadModuleChecked<FAssetToolsModule>(TEXT("AssetTools"));
	}
};

class AssetDuplicator : public FModuleTest
{
protected:
	/// A mesh with everything that an asset can have.
	static UStaticMesh* MakeFullMesh()
	{
		UStaticMesh* const Mesh = MakeMesh(TEXT("Rock"));
		Mesh->SetMeshDescription(2, MeshShapes::Wedge());
		Mesh->SetHiResMeshDescription(MeshShapes::Wedge());
		Mesh->StaticMaterials.Add({TEXT("Bricks"), TEXT("Red")});
		Mesh->AddSocket(TEXT("Handle"))->RelativeLocation = FVector(1, 2, 3);
		Mesh->CreateBodySetup()->AggGeom.BoxElems.Add({FVector(1, 2, 3), FRotator(), 4, 5, 6});
		return Mesh;
	}
};

TEST_F(AssetDuplicator, CopyIsNamedBakedBesideItsSource)
{
	UStaticMesh* const Copy = FTarvinAssetDuplicator::Duplicate(MakeMesh(TEXT("Rock")));
	ASSERT_NE(Copy, nullptr);
	EXPECT_EQ(Copy->GetPathName(), TEXT("/Yard/Props/Rock_Baked.Rock_Baked"));
	EXPECT_EQ(FindPackage(TEXT("/Yard/Props/Rock_Baked"))->FindAsset(TEXT("Rock_Baked")), Copy);
	EXPECT_TRUE(Copy->GetOutermost()->IsDirty()) << "it is not saved";
}

TEST_F(AssetDuplicator, FurtherCopiesGetNamesOfTheirOwnThatBeginTheSameWay)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	std::vector<FString> Names;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		const FString Name = FTarvinAssetDuplicator::Duplicate(Rock)->GetName();
		EXPECT_TRUE(Name.StartsWith(TEXT("Rock_Baked")));
		for (const FString& Earlier : Names)
		{
			EXPECT_NE(Name, Earlier);
		}
		Names.push_back(Name);
	}
	EXPECT_EQ(Names[0], TEXT("Rock_Baked"));
}

TEST_F(AssetDuplicator, CopyOfACopyAddsToItsName)
{
	UStaticMesh* const Copy = FTarvinAssetDuplicator::Duplicate(MakeMesh(TEXT("Rock")));
	EXPECT_EQ(FTarvinAssetDuplicator::Duplicate(Copy)->GetName(), TEXT("Rock_Baked_Baked"));
}

TEST_F(AssetDuplicator, CopyHasAllOfItsSourceAndSharesNothingThatChanges)
{
	UStaticMesh* const Rock = MakeFullMesh();
	const FWorldState Before = State({Rock});
	UStaticMesh* const Copy = FTarvinAssetDuplicator::Duplicate(Rock);
	EXPECT_TRUE(IsSameState(Before, State({Rock}))) << "the source is unchanged";
	ASSERT_EQ(Copy->GetNumSourceModels(), 3);
	for (const int32 Lod : {0, 2})
	{
		EXPECT_TRUE(Near(LocalPositions(Copy, Lod), LocalPositions(Rock, Lod), 0.0));
	}
	EXPECT_FALSE(Copy->IsMeshDescriptionValid(1));
	EXPECT_TRUE(Near(HiResPositionsOf(Copy), HiResPositionsOf(Rock), 0.0));
	ASSERT_EQ(Copy->StaticMaterials.Num(), 2);
	EXPECT_EQ(Copy->StaticMaterials[1].MaterialName, FName(TEXT("Red")));
	EXPECT_EQ(Copy->GetBodySetup()->AggGeom, Rock->GetBodySetup()->AggGeom);
	EXPECT_NE(Copy->GetBodySetup(), Rock->GetBodySetup());
	ASSERT_EQ(Copy->Sockets.Num(), 1);
	EXPECT_EQ(Copy->Sockets[0]->SocketName, FName(TEXT("Handle")));
	EXPECT_NE(Copy->Sockets[0].Get(), Rock->Sockets[0].Get());
	EXPECT_EQ(Copy->Sockets[0]->GetOuter(), Copy);
}

TEST_F(AssetDuplicator, SourceGeometryIsSharedUntilOneOfThemChanges)
{
	UStaticMesh* const Rock = MakeFullMesh();
	UStaticMesh* const Copy = FTarvinAssetDuplicator::Duplicate(Rock);
	EXPECT_EQ(Copy->GetSourceModel(0).GetBulkData(), Rock->GetSourceModel(0).GetBulkData());
}

TEST_F(AssetDuplicator, TransientMeshIsCopiedIntoTheTransientPackage)
{
	UStaticMesh* const Rock = NewObject<UStaticMesh>(GetTransientPackage(), TEXT("Sketch"));
	Rock->SetMeshDescription(0, MeshShapes::Wedge());
	const FAskedAssetTools Tools;
	UStaticMesh* const Copy = FTarvinAssetDuplicator::Duplicate(Rock);
	ASSERT_NE(Copy, nullptr);
	EXPECT_NE(Copy, Rock);
	EXPECT_EQ(Copy->GetOutermost(), GetTransientPackage());
	EXPECT_NE(Copy->GetName(), TEXT("Sketch"));
	EXPECT_TRUE(Near(LocalPositions(Copy), LocalPositions(Rock), 0.0));
	EXPECT_TRUE(Tools.Asked.empty()) << "no asset is made";
}

TEST_F(AssetDuplicator, AssetToolsAreAskedForANameOfFolderAndSuffixAndThenForTheCopy)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	FAskedAssetTools Tools;
	Tools.Answer = MakeMesh(TEXT("Stone"));
	EXPECT_EQ(FTarvinAssetDuplicator::Duplicate(Rock), Tools.Answer);
	EXPECT_EQ(Tools.Asked, (std::vector<std::string>{"/Yard/Props/Rock_Baked|", "Chosen|/Yard/Props|Rock"}));
}

TEST_F(AssetDuplicator, NoSourceARefusalAndAnotherClassGiveNullWithoutALine)
{
	EXPECT_EQ(FTarvinAssetDuplicator::Duplicate(nullptr), nullptr);
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	FAskedAssetTools Tools;
	EXPECT_EQ(FTarvinAssetDuplicator::Duplicate(Rock), nullptr);
	Tools.Answer = NewObject<UBodySetup>();
	EXPECT_EQ(FTarvinAssetDuplicator::Duplicate(Rock), nullptr);
	EXPECT_EQ(Log.Records().Num(), 0);
}
}
