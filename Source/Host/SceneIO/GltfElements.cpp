// SPDX-License-Identifier: MIT
#include "SceneIO/GltfElements.h"

#include "SceneIO/PrintableText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

namespace
{
template <typename T>
T Load(const std::byte* At)
{
	T Out;
	std::memcpy(&Out, At, sizeof(T));
	return Out;
}

template <typename T, typename TOut>
TOut Convert(T Value, bool bNormalized)
{
	if constexpr (std::is_integral_v<T>)
	{
		if (bNormalized)
		{
			const TOut Fraction = static_cast<TOut>(Value) / static_cast<TOut>(std::numeric_limits<T>::max());
			return std::max(Fraction, TOut(-1));
		}
	}
	return static_cast<TOut>(Value);
}

/// Where in an element its components begin: columns of small matrices are padded.
std::size_t ComponentOffset(EGltfType Type, std::size_t ComponentBytes, std::size_t Component)
{
	const std::size_t Rows = Type == EGltfType::Mat2 ? 2 : Type == EGltfType::Mat3 ? 3 : 0;
	if (Rows == 0)
	{
		return Component * ComponentBytes;
	}
	const std::size_t ColumnBytes = (Rows * ComponentBytes + 3) / 4 * 4;
	return Component / Rows * ColumnBytes + Component % Rows * ComponentBytes;
}

template <typename T, typename TOut>
void ReadAs(const FElementView& View, std::size_t First, std::span<TOut> Out)
{
	const std::size_t Components = ComponentCount(View.Type);
	const std::size_t Count = Out.size() / Components;
	for (std::size_t I = 0; I < Count; ++I)
	{
		const std::byte* const Element = View.Element(First + I);
		for (std::size_t C = 0; C < Components; ++C)
		{
			const T Value = Load<T>(Element + ComponentOffset(View.Type, sizeof(T), C));
			Out[I * Components + C] = Convert<T, TOut>(Value, View.bNormalized);
		}
	}
}

/// Single-precision numbers as they are.
template <std::size_t Components>
void CopyFloats(const FElementView& View, std::size_t First, std::span<float> Out)
{
	for (std::size_t I = 0; I * Components < Out.size(); ++I)
	{
		std::memcpy(&Out[I * Components], View.Element(First + I), Components * sizeof(float));
	}
}

bool CopyFloats(const FElementView& View, std::size_t First, std::span<float> Out)
{
	switch (View.Component == EGltfComponent::Float ? View.Type : EGltfType::Unknown)
	{
	case EGltfType::Scalar:
		CopyFloats<1>(View, First, Out);
		return true;
	case EGltfType::Vec2:
		CopyFloats<2>(View, First, Out);
		return true;
	case EGltfType::Vec3:
		CopyFloats<3>(View, First, Out);
		return true;
	case EGltfType::Vec4:
		CopyFloats<4>(View, First, Out);
		return true;
	default:
		return false;
	}
}

template <typename TOut>
void ReadAny(const FElementView& View, std::size_t First, std::span<TOut> Out)
{
	switch (View.Component)
	{
	case EGltfComponent::Byte:
		return ReadAs<std::int8_t>(View, First, Out);
	case EGltfComponent::UnsignedByte:
		return ReadAs<std::uint8_t>(View, First, Out);
	case EGltfComponent::Short:
		return ReadAs<std::int16_t>(View, First, Out);
	case EGltfComponent::UnsignedShort:
		return ReadAs<std::uint16_t>(View, First, Out);
	case EGltfComponent::UnsignedInt:
		return ReadAs<std::uint32_t>(View, First, Out);
	case EGltfComponent::Float:
		return ReadAs<float>(View, First, Out);
	case EGltfComponent::Unknown:
		break;
	}
	std::fill(Out.begin(), Out.end(), TOut(0));
}

/// The nearest value that T holds.
template <typename T>
T Store(double Value, bool bNormalized)
{
	if constexpr (std::is_integral_v<T>)
	{
		const double Largest = static_cast<double>(std::numeric_limits<T>::max());
		const double Scaled = std::round(bNormalized ? Value * Largest : Value);
		const double Smallest = static_cast<double>(std::numeric_limits<T>::lowest());
		return std::isnan(Scaled) ? T(0) : static_cast<T>(std::clamp(Scaled, Smallest, Largest));
	}
	else
	{
		return static_cast<T>(Value);
	}
}

template <typename T>
bool FitsAs(std::span<const float> Values, bool bNormalized, double Tolerance)
{
	return std::all_of(Values.begin(), Values.end(),
		[=](float Value)
		{
			// Read again as a reader of single precision would, so that values that came from this storage fit exactly.
			const float Stored = Convert<T, float>(Store<T>(static_cast<double>(Value), bNormalized), bNormalized);
			return std::abs(static_cast<double>(Stored) - static_cast<double>(Value)) <= Tolerance;
		});
}

template <typename T>
void WriteAs(std::span<const float> Values, bool bNormalized, std::span<std::byte> Out)
{
	for (std::size_t I = 0; I < Values.size(); ++I)
	{
		const T Stored = Store<T>(static_cast<double>(Values[I]), bNormalized);
		std::memcpy(Out.data() + I * sizeof(T), &Stored, sizeof(T));
	}
}

template <typename T>
void AddBounds(
	std::span<const std::byte> Elements, std::size_t Components, std::vector<double>& Min, std::vector<double>& Max)
{
	const std::size_t Size = Components * sizeof(T);
	for (std::size_t Component = 0; Component < Components; ++Component)
	{
		double Least = Min[Component];
		double Greatest = Max[Component];
		for (std::size_t At = Component * sizeof(T); At + sizeof(T) <= Elements.size(); At += Size)
		{
			const double Value = static_cast<double>(Load<T>(Elements.data() + At));
			// A comparison with NaN is false, which leaves the value out.
			Least = Value < Least ? Value : Least;
			Greatest = Value > Greatest ? Value : Greatest;
		}
		Min[Component] = Least;
		Max[Component] = Greatest;
	}
}

/// The elements without gaps, with the sparse ones put in their places.
TSceneResult<FElementView> AssembleSparse(
	const std::shared_ptr<const FGltfDocument>& Document, const FGltfAccessor& Record, const FElementView& Base)
{
	const std::size_t Size = Record.ElementBytes();
	const auto Count = static_cast<std::size_t>(Record.Count);
	auto Bytes = std::make_shared<std::vector<std::byte>>(Count * Size);
	for (std::size_t I = 0; Base.Data != nullptr && I < Count; ++I)
	{
		std::memcpy(Bytes->data() + I * Size, Base.Element(I), Size);
	}
	if (Record.Sparse && Record.Sparse->Count > 0)
	{
		const FGltfSparse& Sparse = *Record.Sparse;
		TSceneResult<std::span<const std::byte>> Indices = Document->ViewBytes(Sparse.IndicesView);
		TSceneResult<std::span<const std::byte>> Values = Document->ViewBytes(Sparse.ValuesView);
		if (!Indices || !Values)
		{
			return Indices ? Values.Error() : Indices.Error();
		}
		const std::size_t IndexSize = ComponentSize(Sparse.IndicesComponent);
		const std::size_t IndexStride = std::max<std::size_t>(IndexSize, Document->View(Sparse.IndicesView).ByteStride);
		const std::size_t ValueStride = std::max<std::size_t>(Size, Document->View(Sparse.ValuesView).ByteStride);
		FElementView Places;
		Places.Data = Indices->data() + Sparse.IndicesOffset;
		Places.Stride = IndexStride;
		Places.Component = Sparse.IndicesComponent;
		for (std::size_t I = 0; I < Sparse.Count; ++I)
		{
			std::uint32_t Place = 0;
			ReadUnsigned(Places, I, std::span(&Place, 1));
			if (Place >= Count)
			{
				return Document->Error(Record.Json,
					"replaces element " + std::to_string(Place) + ", but has only " + std::to_string(Count));
			}
			std::memcpy(Bytes->data() + Place * Size, Values->data() + Sparse.ValuesOffset + I * ValueStride, Size);
		}
	}
	FElementView View = Base;
	View.Data = Bytes->data();
	View.Stride = Size;
	View.Owner = std::move(Bytes);
	return View;
}

TSceneResult<FElementView> View(const std::shared_ptr<const FGltfDocument>& Document, const FGltfAccessor& Record)
{
	if (Record.ElementBytes() == 0)
	{
		return Document->Error(Record.Json, "has a componentType or type that is not known");
	}
	FElementView Out;
	Out.Count = static_cast<std::size_t>(Record.Count);
	Out.Stride = Record.ElementBytes();
	Out.Component = Record.Component;
	Out.Type = Record.Type;
	Out.bNormalized = Record.bNormalized;
	Out.Owner = Document;
	if (Record.View != NoIndex)
	{
		TSceneResult<std::span<const std::byte>> Bytes = Document->ViewBytes(Record.View);
		if (!Bytes)
		{
			return Bytes.Error();
		}
		Out.Data = Bytes->data() + Record.ByteOffset;
		Out.Stride = std::max<std::size_t>(Out.Stride, Document->View(Record.View).ByteStride);
	}
	return Record.View != NoIndex && !Record.Sparse ? TSceneResult<FElementView>(std::move(Out))
													: AssembleSparse(Document, Record, Out);
}
}

TSceneResult<FElementView> ViewElements(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor)
{
	const FGltfAccessor& Record = Document->Accessor(Accessor);
	try
	{
		return View(Document, Record);
	}
	catch (const std::bad_alloc&)
	{
		return Document->Error(Record.Json, "needs more memory than there is");
	}
}

void ReadComponents(const FElementView& View, std::size_t First, std::span<float> Out)
{
	if (!CopyFloats(View, First, Out))
	{
		ReadAny(View, First, Out);
	}
}

void ReadComponents(const FElementView& View, std::size_t First, std::span<double> Out)
{
	ReadAny(View, First, Out);
}

namespace
{
template <typename T>
void ReadUnsignedAs(const FElementView& View, std::size_t First, std::span<std::uint32_t> Out)
{
	if (sizeof(T) == sizeof(std::uint32_t) && View.Stride == sizeof(T) && !Out.empty())
	{
		std::memcpy(Out.data(), View.Element(First), Out.size_bytes());
		return;
	}
	for (std::size_t I = 0; I < Out.size(); ++I)
	{
		Out[I] = Load<T>(View.Element(First + I));
	}
}
}

void ReadUnsigned(const FElementView& View, std::size_t First, std::span<std::uint32_t> Out)
{
	switch (View.Component)
	{
	case EGltfComponent::UnsignedByte:
		return ReadUnsignedAs<std::uint8_t>(View, First, Out);
	case EGltfComponent::UnsignedShort:
		return ReadUnsignedAs<std::uint16_t>(View, First, Out);
	default:
		return ReadUnsignedAs<std::uint32_t>(View, First, Out);
	}
}

bool FitsStorage(std::span<const float> Values, EGltfComponent Component, bool bNormalized, double Tolerance)
{
	switch (Component)
	{
	case EGltfComponent::Byte:
		return FitsAs<std::int8_t>(Values, bNormalized, Tolerance);
	case EGltfComponent::UnsignedByte:
		return FitsAs<std::uint8_t>(Values, bNormalized, Tolerance);
	case EGltfComponent::Short:
		return FitsAs<std::int16_t>(Values, bNormalized, Tolerance);
	case EGltfComponent::UnsignedShort:
		return FitsAs<std::uint16_t>(Values, bNormalized, Tolerance);
	case EGltfComponent::UnsignedInt:
		return FitsAs<std::uint32_t>(Values, bNormalized, Tolerance);
	case EGltfComponent::Float:
		return true;
	case EGltfComponent::Unknown:
		break;
	}
	return false;
}

void WriteComponents(
	std::span<const float> Values, EGltfComponent Component, bool bNormalized, std::span<std::byte> Out)
{
	switch (Component)
	{
	case EGltfComponent::Byte:
		return WriteAs<std::int8_t>(Values, bNormalized, Out);
	case EGltfComponent::UnsignedByte:
		return WriteAs<std::uint8_t>(Values, bNormalized, Out);
	case EGltfComponent::Short:
		return WriteAs<std::int16_t>(Values, bNormalized, Out);
	case EGltfComponent::UnsignedShort:
		return WriteAs<std::uint16_t>(Values, bNormalized, Out);
	case EGltfComponent::UnsignedInt:
		return WriteAs<std::uint32_t>(Values, bNormalized, Out);
	case EGltfComponent::Float:
		if (!Values.empty())
		{
			std::memcpy(Out.data(), Values.data(), Values.size_bytes());
		}
		return;
	case EGltfComponent::Unknown:
		return;
	}
}

void FElementBounds::Add(std::span<const std::byte> Elements, EGltfComponent Component, EGltfType Type)
{
	const std::size_t Components = ComponentCount(Type);
	Min.resize(Components, std::numeric_limits<double>::infinity());
	Max.resize(Components, -std::numeric_limits<double>::infinity());
	switch (Component)
	{
	case EGltfComponent::Byte:
		AddBounds<std::int8_t>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::UnsignedByte:
		AddBounds<std::uint8_t>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::Short:
		AddBounds<std::int16_t>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::UnsignedShort:
		AddBounds<std::uint16_t>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::UnsignedInt:
		AddBounds<std::uint32_t>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::Float:
		AddBounds<float>(Elements, Components, Min, Max);
		break;
	case EGltfComponent::Unknown:
		break;
	}
	SetFinite();
}

void FElementBounds::Add(const FElementBounds& Other)
{
	if (Other.Min.empty())
	{
		return;
	}
	Min.resize(Other.Min.size(), std::numeric_limits<double>::infinity());
	Max.resize(Other.Max.size(), -std::numeric_limits<double>::infinity());
	for (std::size_t Component = 0; Component < Min.size(); ++Component)
	{
		Min[Component] = Other.Min[Component] < Min[Component] ? Other.Min[Component] : Min[Component];
		Max[Component] = Other.Max[Component] > Max[Component] ? Other.Max[Component] : Max[Component];
	}
	SetFinite();
}

void FElementBounds::SetFinite()
{
	const auto IsFinite = [](double Value) { return std::isfinite(Value); };
	bFinite = std::ranges::all_of(Min, IsFinite) && std::ranges::all_of(Max, IsFinite);
}
