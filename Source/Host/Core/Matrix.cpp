// SPDX-License-Identifier: MIT
#include "Core/Matrix.h"

#include <utility>

bool FMatrix::operator==(const FMatrix& Other) const
{
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			if (!(M[Row][Column] == Other.M[Row][Column]))
			{
				return false;
			}
		}
	}
	return true;
}

FMatrix FMatrix::operator*(const FMatrix& Other) const
{
	FMatrix Result;
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			Result.M[Row][Column] = M[Row][0] * Other.M[0][Column] + M[Row][1] * Other.M[1][Column] +
									M[Row][2] * Other.M[2][Column] + M[Row][3] * Other.M[3][Column];
		}
	}
	return Result;
}

FVector FMatrix::GetRow(int32 Row) const
{
	check(Row >= 0 && Row < 4);
	return {M[Row][0], M[Row][1], M[Row][2]};
}

double FMatrix::Determinant() const
{
	// By the two upper and the two lower rows: products of complementary 2x2 minors.
	const auto Minor = [this](int Row, int A, int B) { return M[Row][A] * M[Row + 1][B] - M[Row][B] * M[Row + 1][A]; };
	return Minor(0, 0, 1) * Minor(2, 2, 3) - Minor(0, 0, 2) * Minor(2, 1, 3) + Minor(0, 0, 3) * Minor(2, 1, 2) +
		   Minor(0, 1, 2) * Minor(2, 0, 3) - Minor(0, 1, 3) * Minor(2, 0, 2) + Minor(0, 2, 3) * Minor(2, 0, 1);
}

double FMatrix::LinearDeterminant() const
{
	return GetRow(0) | (GetRow(1) ^ GetRow(2));
}

FMatrix FMatrix::Inverse() const
{
	FMatrix Result;
	const bool bInvertible = TryInverse(Result);
	check(bInvertible);
	return Result;
}

bool FMatrix::TryInverse(FMatrix& OutInverse) const
{
	// Gauss-Jordan elimination with the largest pivot of each column.
	FMatrix Left = *this;
	FMatrix Right;
	for (int Column = 0; Column < 4; ++Column)
	{
		int Pivot = Column;
		for (int Row = Column + 1; Row < 4; ++Row)
		{
			if (std::abs(Left.M[Row][Column]) > std::abs(Left.M[Pivot][Column]))
			{
				Pivot = Row;
			}
		}
		const double PivotValue = Left.M[Pivot][Column];
		if (PivotValue == 0.0 || !std::isfinite(PivotValue))
		{
			return false;
		}
		std::swap(Left.M[Pivot], Left.M[Column]);
		std::swap(Right.M[Pivot], Right.M[Column]);
		for (int Entry = 0; Entry < 4; ++Entry)
		{
			Left.M[Column][Entry] /= PivotValue;
			Right.M[Column][Entry] /= PivotValue;
		}
		for (int Row = 0; Row < 4; ++Row)
		{
			const double Factor = Left.M[Row][Column];
			if (Row == Column || Factor == 0.0)
			{
				continue;
			}
			for (int Entry = 0; Entry < 4; ++Entry)
			{
				Left.M[Row][Entry] -= Factor * Left.M[Column][Entry];
				Right.M[Row][Entry] -= Factor * Right.M[Column][Entry];
			}
		}
	}
	if (Right.ContainsNaN())
	{
		return false;
	}
	OutInverse = Right;
	return true;
}

FMatrix FMatrix::GetTransposed() const
{
	FMatrix Result;
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			Result.M[Row][Column] = M[Column][Row];
		}
	}
	return Result;
}

bool FMatrix::Equals(const FMatrix& Other, double Tolerance) const
{
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			if (!FMath::IsNearlyEqual(M[Row][Column], Other.M[Row][Column], Tolerance))
			{
				return false;
			}
		}
	}
	return true;
}

bool FMatrix::ContainsNaN() const
{
	for (const auto& Row : M)
	{
		for (const double Entry : Row)
		{
			if (!std::isfinite(Entry))
			{
				return true;
			}
		}
	}
	return false;
}
