// SPDX-License-Identifier: MIT
#include "Core/Transform.h"

#include <algorithm>
#include <array>
#include <utility>

// How two transforms combine.
//
// A then B has the linear part Rb * diag(Sb) * Ra * diag(Sa). Write Sb = |Sb| (x) d with signs d, and D = diag(d):
//
//   D * Ra = (D * Ra * D) * D = Ra' * D,   so the linear part is   Rb * (diag(|Sb|) * Ra') * diag(d (x) Sa).
//
// Ra' is a rotation whatever the signs; conjugating by D maps the quaternion's vector v to det(d) d (x) v. So mirrors
// pass through exactly. When the columns of diag(|Sb|) * Ra' are orthogonal, that product is Ra' times their lengths,
// because the orthogonal factor of its polar decomposition is unique and diag(|Sb|) is symmetric and positive: the
// product is a transform with rotation Rb * Ra'. Otherwise the product has shear, and the same formula keeps Ra' and
// the lengths.
//
// A scale of A that is exactly zero on one or two axes flattens the shape; then only the remaining columns count. They
// may be orthogonal, or only one, though Ra' is not their frame. So a flattened A takes the frame of its remaining
// columns, largest first, made orthogonal one after another. This is exact in those cases too, and can be undone: the
// triangular factor of a QR decomposition is unique, so decomposing diag(1 / |Sb|) times the frame gives Ra' back.

namespace
{
struct FSigns
{
	FVector Signs;
	double Determinant;

	explicit FSigns(const FVector& Scale)
		: Signs(FMath::SignOrPositive(Scale.X), FMath::SignOrPositive(Scale.Y), FMath::SignOrPositive(Scale.Z))
		, Determinant(Signs.X * Signs.Y * Signs.Z)
	{
	}

	/// D * R * D; its own inverse.
	FQuat Conjugate(const FQuat& Q) const
	{
		const FVector Vector = Signs * Q.GetVector() * Determinant;
		return {Vector.X, Vector.Y, Vector.Z, Q.W};
	}
};

bool IsUniformMagnitude(const FVector& Scale)
{
	// Exactly: the general formula is right for every scale, and goes over into the plain product without a step.
	const FVector Magnitude = Scale.GetAbs();
	return Magnitude.X == Magnitude.Y && Magnitude.X == Magnitude.Z;
}

/// The signed factor by which each of A's axes, turned by RotationA, grows under ScaleB.
FVector AxisFactors(const FVector& ScaleB, const FQuat& RotationA, const FVector& SignsB)
{
	if (IsUniformMagnitude(ScaleB))
	{
		return SignsB * ScaleB.GetAbs();
	}
	return SignsB * FVector((ScaleB * RotationA.GetAxisX()).Size(), (ScaleB * RotationA.GetAxisY()).Size(),
						(ScaleB * RotationA.GetAxisZ()).Size());
}

/// True when one or two of the components are zero.
bool IsFlattened(const FVector& Scale)
{
	return (Scale.X == 0.0 || Scale.Y == 0.0 || Scale.Z == 0.0) && !Scale.IsZero();
}

/// A unit vector at right angles to the unit vector V.
FVector AnyPerpendicular(const FVector& V)
{
	const FVector Magnitude = V.GetAbs();
	const FVector Other = Magnitude.X <= Magnitude.Y && Magnitude.X <= Magnitude.Z
							  ? FVector::ForwardVector
							  : (Magnitude.Y <= Magnitude.Z ? FVector::RightVector : FVector::UpVector);
	return (V ^ Other).GetSafeNormal(0.0);
}

/// The axes of Rotation, stretched by Stretch and made orthonormal again, the axes with the largest weights first.
FQuat OrthonormalizeStretched(const FQuat& Rotation, const FVector& Stretch, const FVector& Weights)
{
	const FVector Columns[3] = {
		Stretch * Rotation.GetAxisX(), Stretch * Rotation.GetAxisY(), Stretch * Rotation.GetAxisZ()};
	std::array<int32, 3> Order = {0, 1, 2};
	std::stable_sort(Order.begin(), Order.end(),
		[&Weights](int32 A, int32 B) { return FMath::Abs(Weights[A]) > FMath::Abs(Weights[B]); });

	FVector Axes[3];
	const auto [First, Second, Third] = Order;
	Axes[First] = Columns[First].GetSafeNormal(0.0);
	if (Axes[First].IsZero())
	{
		return Rotation;
	}
	const FVector Rest = Columns[Second] - Axes[First] * (Columns[Second] | Axes[First]);
	Axes[Second] = Rest.GetSafeNormal(0.0);
	if (Axes[Second].IsZero())
	{
		Axes[Second] = AnyPerpendicular(Axes[First]);
	}
	// The frame stays right-handed: an odd order of axes takes the opposite cross product.
	const bool bEvenOrder = (First + 1) % 3 == Second;
	Axes[Third] = bEvenOrder ? Axes[First] ^ Axes[Second] : Axes[Second] ^ Axes[First];
	return FQuat::FromAxes(Axes[0], Axes[1], Axes[2]);
}

/// Takes the rounding out of a quaternion that was unit before, so that long chains do not drift. One that was never
/// normalised stays as it is, for the checks to find.
FQuat WithoutDrift(const FQuat& Q)
{
	constexpr double TolerableDrift = 1.e-12;
	const bool bDrifted = Q.IsNormalized() && !FMath::IsNearlyEqual(Q.SizeSquared(), 1.0, TolerableDrift);
	return bDrifted ? Q.GetNormalized() : Q;
}

double SafeQuotient(double Value, double Divisor)
{
	return FMath::Abs(Divisor) <= SMALL_NUMBER ? 0.0 : Value / Divisor;
}
} // namespace

FTransform FTransform::operator*(const FTransform& Other) const
{
	const FVector& ScaleB = Other.Scale3D;
	const FSigns SignsB(ScaleB);
	const FVector Scale = Scale3D * AxisFactors(ScaleB, Rotation, SignsB.Signs);
	FQuat Frame = SignsB.Conjugate(Rotation);
	if (IsFlattened(Scale3D) && !IsUniformMagnitude(ScaleB))
	{
		Frame = OrthonormalizeStretched(Frame, ScaleB.GetAbs(), Scale);
	}
	return FTransform(WithoutDrift(Other.Rotation * Frame), Other.TransformPosition(Translation), Scale);
}

FTransform FTransform::GetRelativeTransform(const FTransform& Base) const
{
	const FVector& ScaleB = Base.Scale3D;
	const FSigns SignsB(ScaleB);
	FQuat Frame = WithoutDrift(Base.Rotation.Inverse() * Rotation);
	if (IsFlattened(Scale3D) && !IsUniformMagnitude(ScaleB))
	{
		Frame = OrthonormalizeStretched(Frame, GetSafeScaleReciprocal(ScaleB).GetAbs(), Scale3D);
	}
	const FQuat RelativeRotation = SignsB.Conjugate(Frame);
	const FVector Factors = AxisFactors(ScaleB, RelativeRotation, SignsB.Signs);
	const FVector RelativeScale(
		SafeQuotient(Scale3D.X, Factors.X), SafeQuotient(Scale3D.Y, Factors.Y), SafeQuotient(Scale3D.Z, Factors.Z));
	return FTransform(RelativeRotation, Base.InverseTransformPosition(Translation), RelativeScale);
}

FVector FTransform::InverseTransformVector(const FVector& V) const
{
	return Rotation.UnrotateVector(V) * GetSafeScaleReciprocal(Scale3D);
}

FMatrix FTransform::ToMatrixWithScale() const
{
	check(IsRotationNormalized());
	const FQuat& Q = Rotation;
	const double XX = Q.X * Q.X * 2.0, YY = Q.Y * Q.Y * 2.0, ZZ = Q.Z * Q.Z * 2.0;
	const double XY = Q.X * Q.Y * 2.0, YZ = Q.Y * Q.Z * 2.0, ZX = Q.Z * Q.X * 2.0;
	const double WX = Q.W * Q.X * 2.0, WY = Q.W * Q.Y * 2.0, WZ = Q.W * Q.Z * 2.0;
	return FMatrix(FVector(1.0 - (YY + ZZ), XY + WZ, ZX - WY) * Scale3D.X,
		FVector(XY - WZ, 1.0 - (XX + ZZ), YZ + WX) * Scale3D.Y, FVector(ZX + WY, YZ - WX, 1.0 - (XX + YY)) * Scale3D.Z,
		Translation);
}

FVector FTransform::GetSafeScaleReciprocal(const FVector& Scale)
{
	return {SafeQuotient(1.0, Scale.X), SafeQuotient(1.0, Scale.Y), SafeQuotient(1.0, Scale.Z)};
}

FString FTransform::ToString() const
{
	return FString::Printf(
		TEXT("T=(%s) R=(%s) S=(%s)"), *Translation.ToString(), *Rotator().ToString(), *Scale3D.ToString());
}
