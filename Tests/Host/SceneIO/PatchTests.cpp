// SPDX-License-Identifier: MIT
// What a save writes over, what it puts beside, and what it leaves alone. Scenes are saved and read again.
#include "SceneIO/ByteViewers.h"
#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/GltfSave.h"
#include "SceneText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{
const std::vector<float> Moved = {7, -3, 2, 11, 13, -17, 19, 23, 29};

FNewElementsPtr Positions(const std::vector<float>& Values = Moved)
{
	return NewElements::FromFloats(Values, EGltfType::Vec3);
}

FGltfMeshChange ChangePositions(const FNewElementsPtr& Elements, std::size_t Primitive = 0)
{
	FGltfMeshChange Change;
	Change.Elements[{Primitive, "POSITION"}] = Elements;
	return Change;
}

FSaveReport Saved(const FGltfPatch& Patch, const std::string& Path)
{
	const TSceneResult<FSaveReport> Report = SaveGltf(Patch, Path);
	if (!Report)
	{
		ADD_FAILURE() << Report.Error().Message;
		return {};
	}
	return *Report;
}

std::vector<float> PositionsOf(
	const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Mesh, std::size_t Primitive = 0)
{
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, Mesh, Primitive);
	if (!Data)
	{
		ADD_FAILURE() << Data.Error().Message;
		return {};
	}
	std::vector<float> Out(std::size_t{Data->VertexCount} * 3);
	ReadComponents(Data->Find("POSITION")->Elements, 0, Out);
	return Out;
}

FGltfIndex PositionAccessor(const FGltfDocument& Document, FGltfIndex Mesh)
{
	return Document.Mesh(Mesh).Primitives[0].FindAttribute("POSITION")->Accessor;
}

/// The two texts without what they have in common at both ends.
std::pair<std::string, std::string> Difference(const std::string& A, const std::string& B)
{
	std::size_t Begin = 0;
	while (Begin < A.size() && Begin < B.size() && A[Begin] == B[Begin])
	{
		++Begin;
	}
	std::size_t End = 0;
	while (End < A.size() - Begin && End < B.size() - Begin && A[A.size() - 1 - End] == B[B.size() - 1 - End])
	{
		++End;
	}
	return {A.substr(Begin, A.size() - Begin - End), B.substr(Begin, B.size() - Begin - End)};
}

/// Two meshes of one triangle each; `Second` are the attributes of the second.
FSceneText TwoMeshes(const std::string& Second)
{
	FSceneText Scene = TriangleScene();
	Scene.AddMesh(Second);
	Scene.AddNode("\"mesh\": 1");
	return Scene;
}
}

TEST(Patch, ATransformIsWrittenIntoItsNodeAlone)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteText(Folder);
	const std::string Before = Folder.Read("scene.gltf");
	FGltfPatch Patch(MustLoad(Path));
	Patch.SetNodeTransform(0, {3, 0.1, -5}, {0, 0, 0, 1}, {1, 1, 1});
	Saved(Patch, Path);
	const auto [Old, New] = Difference(Before, Folder.Read("scene.gltf"));
	EXPECT_EQ(Old, "rotation\": [0, 0, 1, 0], \"scale\": [2, 3, "); // "5]" stands at the end of both
	EXPECT_EQ(New, "translation\": [3,0.1,-");
}

TEST(Patch, ATransformThatIsAlreadyThereKeepsItsDigits)
{
	const FTempFolder Folder;
	FSceneText Scene;
	Scene.AddNode("\"translation\" : [ 1.0, 2e0,3.50 ], \"scale\":[1,1,1]");
	const std::string Path = Scene.WriteText(Folder);
	const std::string Before = Folder.Read("scene.gltf");
	FGltfPatch Patch(MustLoad(Path));
	Patch.SetNodeTransform(0, {1, 2, 3.5}, {0, 0, 0, 1}, {1, 1, 1});
	EXPECT_TRUE(Patch.IsEmpty());
	Saved(Patch, Folder.Path("copy.gltf"));
	EXPECT_EQ(Folder.Read("copy.gltf"), Before);
}

TEST(Patch, AMatrixGivesWayToItsParts)
{
	const FTempFolder Folder;
	FSceneText Scene;
	Scene.AddNode("\"matrix\":[2,0,0,0,0,2,0,0,0,0,2,0,5,6,7,1]");
	const std::string Path = Scene.WriteText(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.SetNodeTransform(0, {5, 6, 7}, {0, 0, 0, 1}, {1, 1, 1});
	Saved(Patch, Path);
	EXPECT_THAT(Folder.Read("scene.gltf"), HasSubstr("{ \"translation\":[5,6,7] }"));
}

TEST(Patch, ElementsThatNobodyElseSeesAreWrittenOverTheOldOnes)
{
	const FTempFolder Folder;
	const FSceneText Scene = TriangleScene();
	const std::string Path = Scene.WriteBinary(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	EXPECT_EQ(After->Model().Accessors.size(), 3u);
	// Bounds are of what was written; normals and indices, and the size of the file, are as they were.
	EXPECT_EQ(After->Json().Raw(After->Accessor(0).Min), "[7,-3,-17]");
	EXPECT_EQ(After->Json().Raw(After->Accessor(0).Max), "[19,23,29]");
	EXPECT_EQ(AsText(*After->BufferBytes(0)).substr(36), Scene.Bytes.substr(36));
}

TEST(Patch, ATextSceneGetsANewBufferFileAndKeepsTheOldOne)
{
	const FTempFolder Folder;
	const FSceneText Scene = TriangleScene();
	const std::string Path = Scene.WriteText(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	const FSaveReport Report = Saved(Patch, Path);
	EXPECT_THAT(Folder.Names(), ElementsAre("scene-1.bin", "scene.bin", "scene.gltf"));
	EXPECT_EQ(Folder.Read("scene.bin"), Scene.Bytes);
	EXPECT_THAT(Report.FilesWritten, ElementsAre(Folder.Path("scene-1.bin")));
	EXPECT_THAT(Report.FilesLeftOver, ElementsAre("scene.bin"));
	EXPECT_EQ(PositionsOf(MustLoad(Path), 0), Moved);

	FGltfPatch Again(MustLoad(Path));
	Again.ChangeMesh(0, ChangePositions(Positions({1, 2, 3, 4, 5, 6, 7, 8, 9})));
	Saved(Again, Path);
	EXPECT_THAT(Folder.Names(), ElementsAre("scene-1.bin", "scene-2.bin", "scene.bin", "scene.gltf"));
}

TEST(Patch, EmbeddedDataStaysEmbedded)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteEmbedded(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Saved(Patch, Path);
	EXPECT_THAT(Folder.Names(), ElementsAre("scene.gltf"));
	EXPECT_EQ(PositionsOf(MustLoad(Path), 0), Moved);
}

TEST(Patch, AnAccessorThatAnotherMeshUsesIsCopiedFirst)
{
	const FTempFolder Folder;
	const std::string Path = TwoMeshes("\"POSITION\": 0").WriteBinary(Folder);
	const auto Before = MustLoad(Path);
	const std::vector<float> Old = PositionsOf(Before, 1);
	FGltfPatch Patch(Before);
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	EXPECT_EQ(PositionsOf(After, 1), Old);
	EXPECT_EQ(PositionAccessor(*After, 1), 0);
	EXPECT_EQ(PositionAccessor(*After, 0), 3);
}

TEST(Patch, TwoChangedMeshesThatShareAnAccessorGetOneEach)
{
	const FTempFolder Folder;
	const std::string Path = TwoMeshes("\"POSITION\": 0").WriteBinary(Folder);
	FGltfPatch Patch(MustLoad(Path));
	const std::vector<float> Other = {-1, -2, -3, -4, -5, -6, -7, -8, -9};
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Patch.ChangeMesh(1, ChangePositions(Positions(Other)));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	EXPECT_EQ(PositionsOf(After, 1), Other);
	EXPECT_NE(PositionAccessor(*After, 0), PositionAccessor(*After, 1));
}

TEST(Patch, PrimitivesThatShareAnAccessorGoOnSharingIt)
{
	FSceneText Scene = TriangleScene();
	Scene.Meshes = {"{\"primitives\":[{\"attributes\":{\"POSITION\":0}},{\"attributes\":{\"POSITION\":0}}]}"};
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	FGltfPatch Patch(MustLoad(Path));
	const FNewElementsPtr Elements = Positions();
	Patch.ChangeMesh(0, ChangePositions(Elements, 0));
	Patch.ChangeMesh(0, ChangePositions(Elements, 1));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(After->Model().Accessors.size(), 3u);
	EXPECT_EQ(PositionsOf(After, 0, 1), Moved);
}

TEST(Patch, BytesThatAnotherAccessorSeesAreCopiedWhateverItsIndex)
{
	// The second accessor is another view of the last of the same bytes.
	FSceneText Scene = TwoMeshes("\"POSITION\": 3");
	Scene.Views.push_back("{\"buffer\":0,\"byteOffset\":24,\"byteLength\":12}");
	Scene.AddAccessor(3, 5126, 1, "VEC3");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	EXPECT_THAT(PositionsOf(After, 1), ElementsAre(0, 3, 5));
}

TEST(Patch, BytesThatAnImageOrAnUnknownExtensionMaySeeAreCopied)
{
	for (const char* const Viewer : {",\"images\":[{\"bufferView\":0,\"mimeType\":\"image/png\"}]",
			 ",\"extensions\":{\"ACME_data\":{\"table\":[0]}}", ",\"extras\":{\"accessor\":0}"})
	{
		FSceneText Scene = TriangleScene();
		Scene.Root = Viewer;
		const FTempFolder Folder;
		const std::string Path = Scene.WriteBinary(Folder);
		FGltfPatch Patch(MustLoad(Path));
		Patch.ChangeMesh(0, ChangePositions(Positions()));
		Saved(Patch, Path);
		const auto After = MustLoad(Path);
		EXPECT_EQ(AsText(*After->BufferBytes(0)).substr(0, Scene.Bytes.size()), Scene.Bytes) << Viewer;
		EXPECT_EQ(PositionsOf(After, 0), Moved) << Viewer;
	}
}

TEST(Patch, InterleavedElementsAreWrittenOverWithoutTouchingTheirNeighbours)
{
	FSceneText Scene;
	const std::vector<float> Rows = {1, 2, 3, 10, 20, 30, 4, 5, 6, 40, 50, 60, 7, 8, 9, 70, 80, 90};
	const int View = Scene.AddView({reinterpret_cast<const char*>(Rows.data()), Rows.size() * 4}, ",\"byteStride\":24");
	Scene.AddAccessor(View, 5126, 3, "VEC3");
	Scene.AddAccessor(View, 5126, 3, "VEC3", ",\"byteOffset\":12");
	Scene.AddMesh("\"POSITION\":0,\"NORMAL\":1");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(After->Model().Accessors.size(), 2u);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	std::vector<float> Normals(9);
	ReadComponents(*ViewElements(After, 1), 0, Normals);
	EXPECT_THAT(Normals, ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90));
}

TEST(Patch, QuantisedElementsThatNoLongerFitBecomeFloatsBesideTheOldOnes)
{
	FSceneText Scene;
	Scene.Add<std::int16_t>({0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 5, 0}, 5122, "VEC3", 4);
	Scene.Views.back() = "{\"buffer\":0,\"byteLength\":24,\"byteStride\":8}";
	Scene.AddMesh("\"POSITION\":0");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	const auto Before = MustLoad(Path);
	const std::vector<float> Turned = {0.5f, 0, 0, -2.25f, 7, 0, 1, 3, 5};
	FGltfPatch Patch(Before);
	Patch.ChangeMesh(0, ChangePositions(NewElements::FromFloatsLike(Before->Accessor(0), Turned, 1e-6)));
	Saved(Patch, Path);
	EXPECT_EQ(PositionsOf(MustLoad(Path), 0), Turned);

	const std::vector<float> Whole = {1, 0, 0, -2, 7, 0, 1, 3, 5};
	FGltfPatch Fits(Before);
	Fits.ChangeMesh(0, ChangePositions(NewElements::FromFloatsLike(Before->Accessor(0), Whole, 1e-6)));
	Saved(Fits, Folder.Path("fits.glb"));
	const auto After = MustLoad(Folder.Path("fits.glb"));
	EXPECT_EQ(PositionsOf(After, 0), Whole);
	EXPECT_EQ(After->Model().Accessors.size(), 1u);
	EXPECT_EQ(After->Json().Raw(After->Accessor(0).Min), "[-2,0,0]");
}

TEST(Patch, ACopiedMeshSharesWhatDoesNotChange)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteBinary(Folder);
	const auto Before = MustLoad(Path);
	FGltfPatch Patch(Before);
	FGltfMeshChange Change = ChangePositions(Positions());
	Change.Members["extras"] = "{\"baked\":true}";
	EXPECT_EQ(Patch.CopyMesh(0, "mesh 0_Baked", Change), 1);
	Patch.SetNodeMesh(0, 1);
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(After->Node(0).Mesh, 1);
	EXPECT_EQ(After->Mesh(1).Name, "mesh 0_Baked");
	EXPECT_EQ(PositionsOf(After, 0), PositionsOf(Before, 0));
	EXPECT_EQ(PositionsOf(After, 1), Moved);
	EXPECT_EQ(After->Mesh(1).Primitives[0].FindAttribute("NORMAL")->Accessor, 1);
	EXPECT_EQ(After->Mesh(1).Primitives[0].Indices, 2);
	EXPECT_EQ(After->Json().Raw(After->Json().Find(After->Mesh(1).Json, "extras")), "{\"baked\":true}");
}

TEST(Patch, AMeshThatChangesWhileACopyKeepsItsOldElementsIsNotWrittenOver)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteBinary(Folder);
	const auto Before = MustLoad(Path);
	FGltfPatch Patch(Before);
	Patch.ChangeMesh(0, ChangePositions(Positions()));
	Patch.CopyMesh(0, "as it was", {});
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(PositionsOf(After, 0), Moved);
	EXPECT_EQ(PositionsOf(After, 1), PositionsOf(Before, 0));
}

TEST(Patch, IndicesAreAddedToAPrimitiveThatHadNone)
{
	FSceneText Scene;
	Scene.AddVec3({0, 0, 0, 2, 0, 0, 0, 3, 5});
	Scene.AddMesh("\"POSITION\":0");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteText(Folder);
	FGltfPatch Patch(MustLoad(Path));
	FGltfMeshChange Change;
	Change.Elements[{0, ""}] = NewElements::FromIndices({0, 2, 1}, std::nullopt);
	Change.Modes[0] = EGltfMode::TriangleStrip;
	Patch.ChangeMesh(0, Change);
	Saved(Patch, Path);
	const TSceneResult<FPrimitiveData> Data = ReadPrimitive(MustLoad(Path), 0, 0);
	ASSERT_TRUE(Data.IsOk()) << Data.Error().Message;
	EXPECT_THAT(Data->Indices, ElementsAre(0, 2, 1));
	EXPECT_EQ(Data->Mode, EGltfMode::TriangleStrip);
}

TEST(Patch, ASceneWithoutAnyBufferGetsOne)
{
	const FTempFolder Folder;
	for (const bool bBinary : {false, true})
	{
		FSceneText Scene;
		Scene.AddNode("\"name\":\"x\"");
		const std::string Path = bBinary ? Scene.WriteBinary(Folder) : Scene.WriteText(Folder);
		FGltfPatch Patch(MustLoad(Path));
		EXPECT_EQ(Patch.AddAccessor(Positions()), 0);
		Saved(Patch, Path);
		const auto After = MustLoad(Path);
		EXPECT_EQ(After->Buffer(0).Kind, bBinary ? EGltfBufferKind::Chunk : EGltfBufferKind::Embedded);
		std::vector<float> Values(9);
		ReadComponents(*ViewElements(After, 0), 0, Values);
		EXPECT_EQ(Values, Moved);
	}
}

TEST(Patch, NewNodesAndExtensionsAreListed)
{
	FSceneText Scene = TriangleScene();
	Scene.AddNode("\"children\": [ 0 ]");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteText(Folder);
	FGltfPatch Patch(MustLoad(Path));
	const FGltfIndex Child = Patch.AppendToRoot("nodes", "{\"name\":\"child\"}");
	EXPECT_EQ(Child, 2);
	Patch.AddNodeChildren(0, {Child});
	Patch.AddNodeChildren(1, {Patch.AppendToRoot("nodes", "{}")});
	Patch.UseExtension("TARVIN_component");
	Patch.UseExtension("TARVIN_component");
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_THAT(After->Node(0).Children, ElementsAre(2));
	EXPECT_THAT(After->Node(1).Children, ElementsAre(0, 3));
	EXPECT_EQ(After->Node(2).Name, "child");
	EXPECT_THAT(After->Model().ExtensionsUsed, ElementsAre("TARVIN_component"));
}

TEST(Patch, LargeInterleavedElementsCrossEveryBlockWhole)
{
	// Rows of 20 bytes: blocks of the writer end within elements.
	constexpr std::size_t Count = 200'000;
	std::string Rows(Count * 20, 'r');
	FSceneText Scene;
	const int View = Scene.AddView(Rows, ",\"byteStride\":20");
	Scene.AddAccessor(View, 5126, Count, "VEC3", ",\"byteOffset\":4");
	Scene.AddMesh("\"POSITION\":0");
	const FTempFolder Folder;
	const std::string Path = Scene.WriteBinary(Folder);
	std::vector<float> Values(Count * 3);
	for (std::size_t I = 0; I < Values.size(); ++I)
	{
		Values[I] = static_cast<float>(I) * 0.5f;
	}
	FGltfPatch Patch(MustLoad(Path));
	Patch.ChangeMesh(0, ChangePositions(Positions(Values)));
	Saved(Patch, Path);
	const auto After = MustLoad(Path);
	EXPECT_EQ(After->Model().Accessors.size(), 1u);
	EXPECT_EQ(PositionsOf(After, 0), Values);
	const std::string Bytes = AsText(*After->BufferBytes(0));
	bool bNeighboursKept = true;
	for (std::size_t I = 0; I < Count; ++I)
	{
		bNeighboursKept =
			bNeighboursKept && Bytes.substr(I * 20, 4) == "rrrr" && Bytes.substr(I * 20 + 16, 4) == "rrrr";
	}
	EXPECT_TRUE(bNeighboursKept);
}

TEST(ByteViewers, OnlyUnsharedPlainElementsAreOwned)
{
	FSceneText Scene = TriangleScene();
	Scene.Views.push_back("{\"buffer\":0,\"byteOffset\":36,\"byteLength\":36}");
	Scene.AddAccessor(3, 5126, 1, "VEC3", ",\"byteOffset\":12");
	Scene.Accessors.push_back("{\"componentType\":5126,\"count\":3,\"type\":\"VEC3\"}");
	const FTempFolder Folder;
	const auto Document = MustLoad(Scene.WriteText(Folder));
	FByteViewers Viewers(*Document);
	EXPECT_TRUE(Viewers.OwnsItsBytes(0));
	EXPECT_FALSE(Viewers.OwnsItsBytes(1));
	EXPECT_TRUE(Viewers.OwnsItsBytes(2));
	EXPECT_FALSE(Viewers.OwnsItsBytes(3));
	EXPECT_FALSE(Viewers.OwnsItsBytes(4));
	EXPECT_EQ(Viewers.UseCount(0), 1u);
	EXPECT_EQ(Viewers.UseCount(3), 0u);
}
