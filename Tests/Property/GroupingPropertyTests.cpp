// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "TarvinGrouping.h"

#include <cmath>

namespace
{
class GroupingProperty : public FEditorFixture
{
};

constexpr double Tolerance = double(1.e-4f);

/// Nothing, more often than not, or a number at, just below or just above the tolerance, or far from it.
double DrawOffset()
{
	return *rc::gen::weightedOneOf<double>({{2, rc::gen::just(0.0)},
		{1, rc::gen::element(Tolerance, -Tolerance, std::nextafter(Tolerance, 1.0), std::nextafter(Tolerance, 0.0),
				0.5 * Tolerance, 2.0 * Tolerance, -1.5 * Tolerance, 0.25)}});
}

FTransform DrawBake()
{
	// About zero the edge of the tolerance is met to the bit; elsewhere as near as numbers stand there.
	const double W = *rc::gen::element(0.0, 0.0, 1.0) + DrawOffset();
	const FQuat Rotation(DrawOffset(), DrawOffset(), DrawOffset(), W);
	const FVector Scale(DrawOffset(), 2.0 + DrawOffset(), DrawOffset());
	return FTransform(*rc::gen::arbitrary<bool>() ? Rotation : -Rotation, FVector(DrawOffset(), 7.0, 0.0), Scale);
}

bool AreClose(double A, double B)
{
	return std::abs(A - B) <= Tolerance;
}

/// The rule as it is said: component by component, rotations up to their sign.
bool IsSameKey(const FTransform& A, const FTransform& B)
{
	const FQuat P = A.GetRotation();
	const FQuat Q = B.GetRotation();
	const FVector S = A.GetScale3D();
	const FVector T = B.GetScale3D();
	const bool bSame = AreClose(P.X, Q.X) && AreClose(P.Y, Q.Y) && AreClose(P.Z, Q.Z) && AreClose(P.W, Q.W);
	const bool bNegated = AreClose(P.X, -Q.X) && AreClose(P.Y, -Q.Y) && AreClose(P.Z, -Q.Z) && AreClose(P.W, -Q.W);
	return (bSame || bNegated) && AreClose(S.X, T.X) && AreClose(S.Y, T.Y) && AreClose(S.Z, T.Z);
}

/// Grouping as its rules say it, item by item and group by group.
TArray<FTarvinGroup> SlowGroups(
	const TArray<FTarvinItem>& Items, const std::vector<FTransform>& Bakes, const std::vector<bool>& bHas)
{
	TArray<FTarvinGroup> Groups;
	for (int32 Index = 0; Index < Items.Num(); ++Index)
	{
		if (!Items[Index].Mesh || !bHas[std::size_t(Index)])
		{
			continue;
		}
		int32 Found = 0;
		while (Found < Groups.Num() &&
			   !(Groups[Found].Mesh == Items[Index].Mesh && IsSameKey(Groups[Found].Bake, Bakes[std::size_t(Index)])))
		{
			++Found;
		}
		if (Found == Groups.Num())
		{
			Groups.Add({Items[Index].Mesh, Bakes[std::size_t(Index)], {}, false});
		}
		Groups[Found].ItemIndices.Add(Index);
	}
	for (FTarvinGroup& Group : Groups)
	{
		int32 Count = 0;
		for (const FTarvinGroup& Other : Groups)
		{
			Count += Other.Mesh == Group.Mesh ? 1 : 0;
		}
		Group.bConflict = Count > 1;
	}
	return Groups;
}
} // namespace

RC_GTEST_FIXTURE_PROP(GroupingProperty, EqualsItsRulesAppliedOneByOne, ())
{
	UStaticMesh* const Meshes[] = {MakeUnevenMesh(TEXT("/Property/A")), MakeUnevenMesh(TEXT("/Property/B")), nullptr};
	const int32 NumItems = *WorldGenerators::Index(14);
	TArray<FTarvinItem> Items;
	std::vector<FTransform> Bakes;
	std::vector<bool> bHas;
	for (int32 Index = 0; Index < NumItems; ++Index)
	{
		Items.Add({nullptr, Meshes[*WorldGenerators::Index(3)], FTransform()});
		Bakes.push_back(DrawBake());
		bHas.push_back(*WorldGenerators::Index(5) > 0);
	}
	const TArray<FTarvinGroup> Groups = FTarvinGrouping::Build(Items,
		[&](const FTarvinItem& Item, FTransform& OutBake)
		{
			const std::size_t Index = std::size_t(&Item - &Items[0]);
			OutBake = Bakes[Index];
			return bool(bHas[Index]);
		});
	const TArray<FTarvinGroup> Expected = SlowGroups(Items, Bakes, bHas);
	RC_ASSERT(Groups.Num() == Expected.Num());
	for (int32 Index = 0; Index < Groups.Num(); ++Index)
	{
		RC_ASSERT(Groups[Index].Mesh.Get() == Expected[Index].Mesh.Get());
		RC_ASSERT(Groups[Index].Bake == Expected[Index].Bake);
		RC_ASSERT(Groups[Index].ItemIndices == Expected[Index].ItemIndices);
		RC_ASSERT(Groups[Index].bConflict == Expected[Index].bConflict);
	}
}
