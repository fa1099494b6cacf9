// SPDX-License-Identifier: MIT
#include "SceneIO/PatchLayout.h"

#include "SceneIO/GltfPrimitiveData.h"
#include "SceneIO/JsonWrite.h"

#include <algorithm>

namespace
{
constexpr std::string_view DracoName = "KHR_draco_mesh_compression";

/// The accessor that a slot names in the document; NoIndex for a slot that is not there.
FGltfIndex AccessorOf(const FGltfPrimitive& Primitive, const FGltfSlot& Slot)
{
	if (Slot.Semantic.empty())
	{
		return Primitive.Indices;
	}
	const FGltfAttribute* const Attribute = Primitive.FindAttribute(Slot.Semantic);
	return Attribute == nullptr ? NoIndex : Attribute->Accessor;
}

/// In ascending order, each once.
std::vector<std::size_t> TouchedPrimitives(const FGltfMeshChange& Change)
{
	std::vector<std::size_t> Out;
	for (const auto& [Slot, Elements] : Change.Elements)
	{
		if (Out.empty() || Out.back() != Slot.Primitive)
		{
			Out.push_back(Slot.Primitive);
		}
	}
	for (const auto& [Primitive, Mode] : Change.Modes)
	{
		Out.push_back(Primitive);
	}
	std::ranges::sort(Out);
	Out.erase(std::unique(Out.begin(), Out.end()), Out.end());
	return Out;
}

bool Touches(const FGltfMeshChange& Change, std::size_t Primitive)
{
	return std::ranges::binary_search(TouchedPrimitives(Change), Primitive);
}

bool HasFormat(const FGltfAccessor& Accessor, const FNewElements& Elements)
{
	return Accessor.Component == Elements.Component && Accessor.Type == Elements.Type &&
		   Accessor.bNormalized == Elements.bNormalized && Accessor.Count == Elements.Count;
}

std::string BoundsText(const std::vector<double>& Values, EGltfComponent Component)
{
	if (Component != EGltfComponent::Float)
	{
		return JsonWrite::Array(Values);
	}
	std::vector<float> Singles(Values.size());
	std::transform(
		Values.begin(), Values.end(), Singles.begin(), [](double Value) { return static_cast<float>(Value); });
	return JsonWrite::Array(Singles);
}
}

std::uint64_t FBufferPiece::End() const
{
	return Elements->Count == 0 ? Offset : Offset + (Elements->Count - 1) * Stride + Elements->ElementBytes();
}

FPatchLayout::FPatchLayout(FGltfPatch InPatch)
	: Patch(std::move(InPatch))
	, Document(Patch.Document())
	, Plan(std::move(Patch.Edit))
	, Viewers(Document)
	, Changes(std::move(Patch.MeshChanges))
{
	for (const FNewElementsPtr& Elements : Patch.NewAccessors)
	{
		NewAccessorOf.emplace(Elements.get(), NewAccessors.size());
		NewAccessors.push_back({Elements, true});
	}
	for (FGltfPatch::FMeshCopy& Copy : Patch.MeshCopies)
	{
		CopyChanges.push_back(std::move(Copy.Change));
	}
}

TSceneResult<FPatchPlan> FPatchLayout::Run()
{
	for (auto& [Mesh, Change] : Changes)
	{
		if (const FSceneStatus Status = Decompress(Mesh, Change); !Status)
		{
			return Status.Error();
		}
	}
	for (std::size_t I = 0; I < CopyChanges.size(); ++I)
	{
		if (const FSceneStatus Status = Decompress(Patch.MeshCopies[I].Mesh, CopyChanges[I]); !Status)
		{
			return Status.Error();
		}
	}
	WriteInPlace();
	for (const auto& [Mesh, Change] : Changes)
	{
		EditMesh(Plan.Edit, Mesh, Change);
	}
	std::vector<std::string> Copies;
	for (std::size_t I = 0; I < CopyChanges.size(); ++I)
	{
		const FGltfPatch::FMeshCopy& Copy = Patch.MeshCopies[I];
		FJsonEdit CopyEdit(Document.Json());
		CopyEdit.SetMember(Document.Mesh(Copy.Mesh).Json, "name", JsonWrite::String(Copy.Name));
		EditMesh(CopyEdit, Copy.Mesh, CopyChanges[I]);
		Copies.push_back(CopyEdit.Apply(Document.Mesh(Copy.Mesh).Json));
	}
	AppendList("meshes", std::move(Copies));
	PlaceNewAccessors();
	for (auto& [List, Texts] : Patch.Appended)
	{
		AppendList(List, std::move(Texts));
	}
	for (const auto& [Node, Children] : Patch.NewChildren)
	{
		const FJsonIndex Object = Document.Node(Node).Json;
		const FJsonIndex Array = Document.Json().Find(Object, "children");
		std::string Text;
		for (const FGltfIndex Child : Children)
		{
			const std::string Number = JsonWrite::Integer(static_cast<std::uint64_t>(Child));
			if (Array != NoJson)
			{
				Plan.Edit.AppendElement(Array, Number);
			}
			Text += (Text.empty() ? "" : ",") + Number;
		}
		if (Array == NoJson)
		{
			Plan.Edit.SetMember(Object, "children", "[" + Text + "]");
		}
	}
	ForgetDraco();
	std::vector<std::string> Names;
	std::transform(
		Patch.NewExtensions.begin(), Patch.NewExtensions.end(), std::back_inserter(Names), JsonWrite::String);
	AppendList("extensionsUsed", std::move(Names));
	for (auto& [Buffer, BufferPlan] : Plan.Buffers)
	{
		std::sort(BufferPlan.Pieces.begin(), BufferPlan.Pieces.end(),
			[](const FBufferPiece& A, const FBufferPiece& B) { return A.Offset < B.Offset; });
	}
	return std::move(Plan);
}

/// A primitive that changes cannot stay compressed: all that it holds compressed is written plain.
FSceneStatus FPatchLayout::Decompress(FGltfIndex Mesh, FGltfMeshChange& Change)
{
	for (const std::size_t Index : TouchedPrimitives(Change))
	{
		const FGltfPrimitive& Primitive = Document.Mesh(Mesh).Primitives[Index];
		if (!Primitive.Draco)
		{
			continue;
		}
		TSceneResult<FPrimitiveData> Plain = ReadPrimitive(Patch.DocumentPtr(), Mesh, Index);
		if (!Plain)
		{
			return Plain.Error();
		}
		for (const FGltfDraco::FAttribute& Attribute : Primitive.Draco->Attributes)
		{
			const FVertexAttribute* const Decoded = Plain->Find(Attribute.Semantic);
			FNewElementsPtr& Elements = Change.Elements[{Index, Attribute.Semantic}];
			if (Elements == nullptr && Decoded != nullptr)
			{
				Elements = NewElements::FromView(Decoded->Elements);
			}
		}
		FNewElementsPtr& Indices = Change.Elements[{Index, std::string()}];
		if (Indices == nullptr)
		{
			Indices = NewElements::FromIndices(std::move(Plain->Indices), std::nullopt);
			Change.Modes.try_emplace(Index, Plain->Mode);
		}
	}
	return {};
}

/// Takes the name of the compression from the file once nothing in it is compressed any more.
void FPatchLayout::ForgetDraco()
{
	std::size_t Removed = 0;
	bool bAnyLeft = false;
	for (std::size_t Mesh = 0; Mesh < Document.Model().Meshes.size(); ++Mesh)
	{
		const auto Change = Changes.find(static_cast<FGltfIndex>(Mesh));
		for (std::size_t I = 0; I < Document.Model().Meshes[Mesh].Primitives.size(); ++I)
		{
			if (Document.Model().Meshes[Mesh].Primitives[I].Draco)
			{
				const bool bPlain = Change != Changes.end() && Touches(Change->second, I);
				Removed += bPlain ? 1u : 0u;
				bAnyLeft = bAnyLeft || !bPlain;
			}
		}
	}
	// A copy is only compressed where its original was; an original that became plain may still have a compressed copy.
	for (std::size_t I = 0; I < CopyChanges.size(); ++I)
	{
		const std::vector<FGltfPrimitive>& Primitives = Document.Mesh(Patch.MeshCopies[I].Mesh).Primitives;
		for (std::size_t P = 0; P < Primitives.size(); ++P)
		{
			bAnyLeft = bAnyLeft || (Primitives[P].Draco && !Touches(CopyChanges[I], P));
		}
	}
	if (Removed == 0 || bAnyLeft)
	{
		return;
	}
	const FJsonText& Json = Document.Json();
	for (const std::string_view List : {"extensionsUsed", "extensionsRequired"})
	{
		const FJsonIndex Array = Json.Find(Json.Root(), List);
		const std::vector<FJsonIndex> Names = Json.Elements(Array);
		const auto IsDraco = [&Json](FJsonIndex Name) { return Json.StringEquals(Name, DracoName); };
		const bool bAddsMore = List == "extensionsUsed" && !Patch.NewExtensions.empty();
		if (!bAddsMore && !Names.empty() && std::all_of(Names.begin(), Names.end(), IsDraco))
		{
			Plan.Edit.RemoveMember(Json.Root(), List);
			continue;
		}
		for (const FJsonIndex Name : Names)
		{
			if (IsDraco(Name))
			{
				Plan.Edit.RemoveElement(Array, Name);
			}
		}
	}
}

void FPatchLayout::WriteInPlace()
{
	std::map<FGltfIndex, std::vector<FUse>> ByAccessor;
	for (const auto& [Mesh, Change] : Changes)
	{
		for (const auto& [Slot, Elements] : Change.Elements)
		{
			const FGltfPrimitive& Primitive = Document.Mesh(Mesh).Primitives[Slot.Primitive];
			const FGltfIndex Accessor = AccessorOf(Primitive, Slot);
			if (Accessor != NoIndex && !Primitive.Draco)
			{
				ByAccessor[Accessor].push_back({Mesh, Slot, Elements});
			}
		}
	}
	// A copy goes on seeing what its change leaves out.
	for (std::size_t I = 0; I < CopyChanges.size(); ++I)
	{
		const std::vector<FGltfPrimitive>& Primitives = Document.Mesh(Patch.MeshCopies[I].Mesh).Primitives;
		for (std::size_t P = 0; P < Primitives.size(); ++P)
		{
			const auto See = [&](const std::string& Semantic, FGltfIndex Accessor)
			{
				if (!CopyChanges[I].Elements.contains({P, Semantic}))
				{
					ByAccessor.erase(Accessor);
				}
			};
			See(std::string(), Primitives[P].Indices);
			for (const FGltfAttribute& Attribute : Primitives[P].Attributes)
			{
				See(Attribute.Semantic, Attribute.Accessor);
			}
			for (const std::vector<FGltfAttribute>& Target : Primitives[P].Targets)
			{
				for (const FGltfAttribute& Attribute : Target)
				{
					ByAccessor.erase(Attribute.Accessor);
				}
			}
		}
	}
	std::erase_if(ByAccessor, [this](const auto& Entry) { return !MayWriteOver(Entry.first, Entry.second); });
	std::vector<const FNewElements*> Bounded;
	for (const auto& [Accessor, Uses] : ByAccessor)
	{
		if (Uses.front().Slot.Semantic == "POSITION" || Document.Accessor(Accessor).Min != NoJson)
		{
			Bounded.push_back(Uses.front().Elements.get());
		}
	}
	NewElements::MeasureAll(std::move(Bounded));
	for (const auto& [Accessor, Uses] : ByAccessor)
	{
		// The first user keeps the accessor; another one with other elements gets one of its own.
		const FNewElementsPtr& Elements = Uses.front().Elements;
		bool bPosition = false;
		for (const FUse& Use : Uses)
		{
			if (Use.Elements == Elements)
			{
				bInPlace[{Use.Mesh, Use.Slot}] = true;
				bPosition = bPosition || Use.Slot.Semantic == "POSITION";
			}
		}
		WriteOver(Accessor, Elements, bPosition);
	}
}

bool FPatchLayout::MayWriteOver(FGltfIndex Accessor, const std::vector<FUse>& Uses)
{
	return Viewers.UseCount(Accessor) == Uses.size() &&
		   HasFormat(Document.Accessor(Accessor), *Uses.front().Elements) && Viewers.OwnsItsBytes(Accessor);
}

void FPatchLayout::WriteOver(FGltfIndex Accessor, const FNewElementsPtr& Elements, bool bPosition)
{
	const FGltfAccessor& Record = Document.Accessor(Accessor);
	const FGltfBufferView& View = Document.View(Record.View);
	FBufferPiece Piece;
	Piece.Offset = View.ByteOffset + Record.ByteOffset;
	Piece.Stride = View.ByteStride == 0 ? Record.ElementBytes() : View.ByteStride;
	Piece.Elements = Elements;
	PlanFor(View.Buffer).Pieces.push_back(std::move(Piece));
	SetBounds(Accessor, *Elements, bPosition);
}

void FPatchLayout::SetBounds(FGltfIndex Accessor, const FNewElements& Elements, bool bPosition)
{
	const FGltfAccessor& Record = Document.Accessor(Accessor);
	const bool bWanted = Record.Min != NoJson || Record.Max != NoJson || bPosition;
	if (!bWanted || !Elements.Bounds().bFinite)
	{
		return;
	}
	const FJsonText& Json = Document.Json();
	const auto Set = [&](std::string_view Key, FJsonIndex Old, const std::vector<double>& Values)
	{
		if (Old == NoJson && !bPosition)
		{
			return;
		}
		// Numbers that already say the same keep their digits.
		const std::vector<FJsonIndex> Numbers = Json.Elements(Old);
		const bool bSingle = Record.Component == EGltfComponent::Float;
		const auto IsSame = [&Json, bSingle](FJsonIndex Number, double Value)
		{
			const std::optional<double> Written = Json.Number(Number);
			return Written && (bSingle ? static_cast<float>(*Written) == static_cast<float>(Value) : *Written == Value);
		};
		const bool bSame =
			Old != NoJson && std::equal(Numbers.begin(), Numbers.end(), Values.begin(), Values.end(), IsSame);
		if (!bSame)
		{
			Plan.Edit.SetMember(Record.Json, Key, BoundsText(Values, Record.Component));
		}
	};
	Set("min", Record.Min, Elements.Bounds().Min);
	Set("max", Record.Max, Elements.Bounds().Max);
}

void FPatchLayout::EditMesh(FJsonEdit& Edit, FGltfIndex Mesh, const FGltfMeshChange& Change)
{
	const FGltfMesh& Record = Document.Mesh(Mesh);
	const bool bOriginal = &Edit == &Plan.Edit;
	for (const auto& [Slot, Elements] : Change.Elements)
	{
		if (!bOriginal || !bInPlace.contains({Mesh, Slot}))
		{
			EditSlot(Edit, Record.Primitives[Slot.Primitive], Slot, Elements);
		}
	}
	for (const auto& [Primitive, Mode] : Change.Modes)
	{
		const FGltfPrimitive& PrimitiveRecord = Record.Primitives[Primitive];
		if (PrimitiveRecord.Mode != Mode)
		{
			Edit.SetMember(PrimitiveRecord.Json, "mode", JsonWrite::Integer(static_cast<std::uint64_t>(Mode)));
		}
	}
	for (const auto& [Key, Text] : Change.Members)
	{
		Edit.SetMember(Record.Json, Key, Text);
	}
	const FJsonText& Json = Document.Json();
	for (const std::size_t Primitive : TouchedPrimitives(Change))
	{
		const FGltfPrimitive& PrimitiveRecord = Record.Primitives[Primitive];
		if (PrimitiveRecord.Draco)
		{
			const FJsonIndex Extensions = Json.Find(PrimitiveRecord.Json, "extensions");
			Json.Count(Extensions) == 1 ? Edit.RemoveMember(PrimitiveRecord.Json, "extensions")
										: Edit.RemoveMember(Extensions, DracoName);
		}
	}
}

void FPatchLayout::EditSlot(
	FJsonEdit& Edit, const FGltfPrimitive& Primitive, const FGltfSlot& Slot, const FNewElementsPtr& Elements)
{
	const FGltfIndex Old = AccessorOf(Primitive, Slot);
	const bool bHadBounds = Old != NoIndex && Document.Accessor(Old).Min != NoJson;
	const FGltfIndex New = AccessorFor(Elements, bHadBounds || Slot.Semantic == "POSITION");
	const std::string Number = JsonWrite::Integer(static_cast<std::uint64_t>(New));
	const FJsonIndex Owner =
		Slot.Semantic.empty() ? Primitive.Json : Document.Json().Find(Primitive.Json, "attributes");
	Edit.SetMember(Owner, Slot.Semantic.empty() ? "indices" : std::string_view(Slot.Semantic), Number);
}

FGltfIndex FPatchLayout::AccessorFor(const FNewElementsPtr& Elements, bool bBounds)
{
	const auto [Found, bNew] = NewAccessorOf.emplace(Elements.get(), NewAccessors.size());
	if (bNew)
	{
		NewAccessors.push_back({Elements, false});
	}
	NewAccessors[Found->second].bBounds = NewAccessors[Found->second].bBounds || bBounds;
	return static_cast<FGltfIndex>(Document.Model().Accessors.size() + Found->second);
}

void FPatchLayout::AppendList(std::string_view List, std::vector<std::string> Texts)
{
	if (Texts.empty())
	{
		return;
	}
	const FJsonText& Json = Document.Json();
	const FJsonIndex Array = Json.Find(Json.Root(), List);
	std::string Joined;
	for (std::string& Text : Texts)
	{
		if (Array != NoJson)
		{
			Plan.Edit.AppendElement(Array, std::move(Text));
		}
		else
		{
			Joined += (Joined.empty() ? "" : ",") + Text;
		}
	}
	if (Array == NoJson)
	{
		Plan.Edit.SetMember(Json.Root(), List, "[" + Joined + "]");
	}
}
