// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"
#include "Support/RapidCheck.h"
#include "TarvinSelectionAction.h"

#include "Host/Core/MathGenerators.h"

namespace
{
FTarvinItem ItemAt(const FTransform& Where)
{
	return {nullptr, nullptr, Where};
}

/// What the operation wants baked, and where it then puts the component.
std::pair<FTransform, FTransform> Split(const FTarvinOperation& Operation, const FTransform& Where)
{
	FTransform Bake;
	EXPECT_TRUE(Operation.ComputeBake(ItemAt(Where), Bake));
	return {Bake, Operation.ComputeNewComponentTransform(ItemAt(Where), Bake)};
}

const FTransform Somewhere(Turn(FVector(0, 0, 1), 90), FVector(500, -200, 30), FVector(2, -3, 5));

bool IsEmptyRecord(const FTarvinOperation& Operation)
{
	return !Operation.ComputeBake && !Operation.ComputeNewComponentTransform && !Operation.FormatSummary;
}

TEST(OperationRecord, NewOneHasNoCallablesRejectsUnrepresentableParentsAndHasNoText)
{
	const FTarvinOperation Operation;
	EXPECT_TRUE(IsEmptyRecord(Operation));
	EXPECT_TRUE(Operation.bRejectUnrepresentableParent);
	EXPECT_TRUE(Operation.TransactionText.IsEmpty());
}

TEST(OperationRecord, MoveConstructionLeavesTheSourceWithoutCallables)
{
	FTarvinOperation Source = FTarvinOperation::SetPivot(ETarvinPivotPosition::WorldOrigin);
	const FTarvinOperation Moved(std::move(Source));
	EXPECT_TRUE(IsEmptyRecord(Source));
	EXPECT_EQ(Split(Moved, Somewhere), Split(FTarvinOperation::SetPivot(ETarvinPivotPosition::WorldOrigin), Somewhere));
	EXPECT_FALSE(Moved.bRejectUnrepresentableParent);
	EXPECT_EQ(Moved.TransactionText.ToString(), TEXT("Set Pivot"));
	EXPECT_EQ(Moved.FormatSummary(3), TEXT("Pivot moved to world origin on 3 mesh(es)"));
}

TEST(OperationRecord, CopyDoesWhatItsSourceDoesAndLeavesItWhole)
{
	const FTarvinOperation Source = FTarvinOperation::SetPivot(ETarvinPivotPosition::WorldOrigin);
	const FTarvinOperation Copy(Source);
	FTarvinOperation Assigned;
	Assigned = Source;
	for (const FTarvinOperation* Operation : {&Source, &Copy, static_cast<const FTarvinOperation*>(&Assigned)})
	{
		EXPECT_EQ(Split(*Operation, Somewhere), Split(Source, Somewhere));
		EXPECT_FALSE(Operation->bRejectUnrepresentableParent);
		EXPECT_TRUE(Operation->TransactionText.IdenticalTo(Source.TransactionText));
		EXPECT_EQ(Operation->FormatSummary(7), TEXT("Pivot moved to world origin on 7 mesh(es)"));
	}
}

TEST(OperationRecord, CopyOutlivesItsSource)
{
	FTarvinOperation Copy;
	{
		const FTarvinOperation Source = FTarvinOperation::SetPivot(ETarvinPivotPosition::Back);
		Copy = Source;
	}
	EXPECT_EQ(Copy.FormatSummary(2), TEXT("Pivot moved to back on 2 mesh(es)"));
}

TEST(OperationRecord, MoveAssignmentExchangesTheCallablesAndCopiesFlagAndText)
{
	FTarvinOperation Left = FTarvinOperation::RotationScaleBake();
	FTarvinOperation Right = FTarvinOperation::SetPivot(ETarvinPivotPosition::Top);
	Left = std::move(Right);
	EXPECT_EQ(Left.FormatSummary(1), TEXT("Pivot moved to top on 1 mesh(es)"));
	EXPECT_EQ(Right.FormatSummary(1), TEXT("Baked 1 mesh(es)"));
	EXPECT_EQ(Split(Right, Somewhere), Split(FTarvinOperation::RotationScaleBake(), Somewhere));
	for (const FTarvinOperation* Operation : {&Left, &Right})
	{
		EXPECT_FALSE(Operation->bRejectUnrepresentableParent);
		EXPECT_EQ(Operation->TransactionText.ToString(), TEXT("Set Pivot"));
	}
}

/// What is expected of a record: a number for each callable, 0 for none, then the flag and the text.
struct FExpectedRecord
{
	int32 Bake = 0;
	int32 Place = 0;
	int32 Summary = 0;
	bool bReject = true;
	FString Text;

	void ExchangeCallables(FExpectedRecord& Other)
	{
		std::swap(Bake, Other.Bake);
		std::swap(Place, Other.Place);
		std::swap(Summary, Other.Summary);
	}
};

/// A record of callables that answer with numbers of their own, each of which may be missing.
std::pair<FTarvinOperation, FExpectedRecord> DrawRecord(int32 Number)
{
	const auto NumberOrNone = [Number](int32 Place) { return *rc::gen::arbitrary<bool>() ? 3 * Number + Place : 0; };
	const FExpectedRecord Expected{
		NumberOrNone(1), NumberOrNone(2), NumberOrNone(3), *rc::gen::arbitrary<bool>(), FString::FromInt(Number)};
	FTarvinOperation Record;
	if (Expected.Bake != 0)
	{
		Record.ComputeBake = [Id = Expected.Bake](const FTarvinItem&, FTransform& OutBake)
		{
			OutBake = FTransform(FVector(Id, 0, 0));
			return true;
		};
	}
	if (Expected.Place != 0)
	{
		Record.ComputeNewComponentTransform = [Id = Expected.Place](const FTarvinItem&, const FTransform&)
		{ return FTransform(FVector(Id, 0, 0)); };
	}
	if (Expected.Summary != 0)
	{
		Record.FormatSummary = [Id = Expected.Summary](int32) { return FString::FromInt(Id); };
	}
	Record.bRejectUnrepresentableParent = Expected.bReject;
	Record.TransactionText = FText::FromString(Expected.Text);
	return {Record, Expected};
}

void ExpectRecord(const FTarvinOperation& Record, const FExpectedRecord& Expected)
{
	FTransform Bake;
	RC_ASSERT(Record.ComputeBake.IsSet() == (Expected.Bake != 0));
	// In brackets of its own here and below: RC_ASSERT looks at both sides of a bare ||.
	RC_ASSERT((!Record.ComputeBake || Record.ComputeBake(ItemAt(FTransform()), Bake)));
	RC_ASSERT(Bake.GetTranslation().X == Expected.Bake);
	RC_ASSERT(Record.ComputeNewComponentTransform.IsSet() == (Expected.Place != 0));
	RC_ASSERT((!Record.ComputeNewComponentTransform ||
			   Record.ComputeNewComponentTransform(ItemAt(FTransform()), Bake).GetTranslation().X == Expected.Place));
	RC_ASSERT(Record.FormatSummary.IsSet() == (Expected.Summary != 0));
	RC_ASSERT((!Record.FormatSummary || Record.FormatSummary(1) == FString::FromInt(Expected.Summary)));
	RC_ASSERT(Record.bRejectUnrepresentableParent == Expected.bReject);
	RC_ASSERT(Record.TransactionText.ToString() == Expected.Text);
}

RC_GTEST_PROP(OperationRecord, AnyMixOfCopiesAndMovesLeavesEachWithItsFields, ())
{
	constexpr int32 NumRecords = 3;
	FTarvinOperation Records[NumRecords];
	FExpectedRecord Expected[NumRecords];
	const auto Index = rc::gen::inRange(0, NumRecords);
	const auto Steps = *rc::gen::container<std::vector<std::tuple<int32, int32, int32>>>(
		rc::gen::tuple(rc::gen::inRange(0, 5), Index, Index));
	int32 NumDrawn = 0;
	for (const auto& [Step, A, B] : Steps)
	{
		switch (Step)
		{
		case 0:
			std::tie(Records[A], Expected[A]) = DrawRecord(++NumDrawn);
			break;
		case 1:
			Records[A] = Records[B];
			Expected[A] = Expected[B];
			break;
		case 2: // the callables change places, flag and text are copied
			Records[A] = std::move(Records[B]);
			Expected[A].ExchangeCallables(Expected[B]);
			Expected[A].bReject = Expected[B].bReject;
			Expected[A].Text = Expected[B].Text;
			break;
		case 3: // the callables leave the source, flag and text may
		{
			const FTarvinOperation Taken(std::move(Records[A]));
			ExpectRecord(Taken, Expected[A]);
			RC_ASSERT(IsEmptyRecord(Records[A]));
			Records[A] = FTarvinOperation(Taken);
			break;
		}
		default:
			ExpectRecord(FTarvinOperation(Records[A]), Expected[A]);
		}
		for (int32 Record = 0; Record < NumRecords; ++Record)
		{
			ExpectRecord(Records[Record], Expected[Record]);
		}
	}
}

TEST(BakeTransformOperation, TakesRotationAndScaleExactlyAndLeavesTheLocation)
{
	const auto [Bake, Residual] = Split(FTarvinOperation::RotationScaleBake(), Somewhere);
	EXPECT_EQ(Bake, FTransform(Somewhere.GetRotation(), FVector::ZeroVector, FVector(2, -3, 5)));
	EXPECT_EQ(Residual, FTransform(FQuat::Identity, FVector(500, -200, 30), FVector::OneVector));
	EXPECT_TRUE(Near(Bake * Residual, Somewhere, 1.e-12));
}

TEST(BakeTransformOperation, QuarterTurnOfTenfoldSizeSplitsIntoItsParts)
{
	const FQuat QuarterTurn = Turn(FVector(0, 0, 1), 90);
	const auto [Bake, Residual] = Split(
		FTarvinOperation::RotationScaleBake(), FTransform(QuarterTurn, FVector(500, -200, 30), FVector(10, 10, 10)));
	EXPECT_TRUE(Near(Bake, FTransform(QuarterTurn, FVector(0, 0, 0), FVector(10, 10, 10))));
	EXPECT_TRUE(Near(Residual, FTransform(FQuat::Identity, FVector(500, -200, 30), FVector(1, 1, 1))));
}

TEST(BakeTransformOperation, MirroredZeroAndTinyScalesGoIntoTheBakeAsTheyAre)
{
	for (const FVector Scale : {FVector(-1, 2, 3), FVector(0, 2, 3), FVector(2, 1.e-9, -0.0)})
	{
		const FTransform Where(Turn(FVector(1, 0, 0), 30), FVector(1, 2, 3), Scale);
		const auto [Bake, Residual] = Split(FTarvinOperation::RotationScaleBake(), Where);
		EXPECT_EQ(Bake.GetScale3D(), Scale);
		EXPECT_EQ(Residual.GetScale3D(), FVector(1, 1, 1));
	}
}

TEST(BakeTransformOperation, NewPlaceDoesNotDependOnTheBakeThatWasMade)
{
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	const FTransform OtherBake(Turn(FVector(1, 0, 0), 7), FVector(1, 2, 3), FVector(4, 5, 6));
	EXPECT_EQ(Operation.ComputeNewComponentTransform(ItemAt(Somewhere), OtherBake),
		FTransform(FQuat::Identity, FVector(500, -200, 30), FVector(1, 1, 1)));
}

RC_GTEST_PROP(BakeTransformOperation, ResidualAfterBakeIsTheWorldTransform, ())
{
	const FTransform Where = *MathGenerators::Transform(MathGenerators::AnyScale());
	const FVector Point = *MathGenerators::Point();
	const auto [Bake, Residual] = Split(FTarvinOperation::RotationScaleBake(), Where);
	RC_ASSERT(Bake.GetTranslation() == FVector::ZeroVector);
	RC_ASSERT(Residual.GetRotation() == FQuat::Identity);
	const FVector There = Where.TransformPosition(Point);
	const double Tolerance = 1.e-12 * (1.0 + There.Size() + Where.GetTranslation().Size());
	RC_ASSERT(Residual.TransformPosition(Bake.TransformPosition(Point)).Equals(There, Tolerance));
}

TEST(BakeTransformOperation, TextsAreTheseAndCanBeTranslated)
{
	const FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	EXPECT_TRUE(Operation.bRejectUnrepresentableParent);
	EXPECT_EQ(Operation.TransactionText.GetSourceString(), TEXT("Bake Transform"));
	EXPECT_EQ(Operation.TransactionText.GetNamespace(), TEXT("TarvinTransform"));
	EXPECT_EQ(Operation.TransactionText.GetKey(), TEXT("TarvinTransaction"));
	EXPECT_EQ(Operation.FormatSummary(0), TEXT("Baked 0 mesh(es)"));
	EXPECT_EQ(Operation.FormatSummary(12345), TEXT("Baked 12345 mesh(es)"));
}

TEST(SetPivotOperation, TextsAreTheseAndCanBeTranslated)
{
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(ETarvinPivotPosition::Bottom);
	EXPECT_FALSE(Operation.bRejectUnrepresentableParent);
	EXPECT_EQ(Operation.TransactionText.GetSourceString(), TEXT("Set Pivot"));
	EXPECT_EQ(Operation.TransactionText.GetNamespace(), TEXT("TarvinTransform"));
	EXPECT_EQ(Operation.TransactionText.GetKey(), TEXT("TarvinPivotTransaction"));
	EXPECT_EQ(Operation.FormatSummary(3), TEXT("Pivot moved to bottom on 3 mesh(es)"));
}

TEST(SetPivotOperation, ComponentKeepsRotationAndScaleAndGoesWhereThePivotPointWas)
{
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(ETarvinPivotPosition::Center);
	const FTransform Bake(FVector(-7, 2, -11));
	const FTransform Result = Operation.ComputeNewComponentTransform(ItemAt(Somewhere), Bake);
	EXPECT_EQ(Result.GetRotation(), Somewhere.GetRotation());
	EXPECT_EQ(Result.GetScale3D(), Somewhere.GetScale3D());
	EXPECT_TRUE(Near(Result.GetTranslation(), Somewhere.TransformPosition(FVector(7, -2, 11)), 1.e-12));
}

TEST(PivotPositions, HaveTheseNumbersAndNames)
{
	const std::pair<ETarvinPivotPosition, const TCHAR*> Named[] = {{ETarvinPivotPosition::Center, TEXT("center")},
		{ETarvinPivotPosition::Bottom, TEXT("bottom")}, {ETarvinPivotPosition::Top, TEXT("top")},
		{ETarvinPivotPosition::Left, TEXT("left")}, {ETarvinPivotPosition::Right, TEXT("right")},
		{ETarvinPivotPosition::Front, TEXT("front")}, {ETarvinPivotPosition::Back, TEXT("back")},
		{ETarvinPivotPosition::WorldOrigin, TEXT("world origin")}};
	uint8 Value = 0;
	for (const auto& [Position, Name] : Named)
	{
		EXPECT_EQ(static_cast<uint8>(Position), Value++);
		EXPECT_EQ(FString(TarvinPivot::GetPositionName(Position)), Name);
	}
}

TEST(PivotPositions, ValueOutOfRangeIsUnknown)
{
	for (const int Value : {8, 9, 100, 255})
	{
		EXPECT_EQ(FString(TarvinPivot::GetPositionName(static_cast<ETarvinPivotPosition>(Value))), TEXT("unknown"))
			<< Value;
	}
	EXPECT_EQ(FTarvinOperation::SetPivot(static_cast<ETarvinPivotPosition>(8)).FormatSummary(1),
		TEXT("Pivot moved to unknown on 1 mesh(es)"));
}

TEST(RememberedAnswer, OnlyApplyToAllBecomesADuplicateWhereInPlaceIsImpossible)
{
	using EChoice = ETarvinSharedAssetChoice;
	const auto& Resolve = FTarvinSelectionAction::ResolveRememberedChoice;
	EXPECT_EQ(Resolve(EChoice::ApplyToAll, true), EChoice::ApplyToAll);
	EXPECT_EQ(Resolve(EChoice::ApplyToAll, false), EChoice::Duplicate);
	EXPECT_EQ(Resolve(EChoice::Duplicate, true), EChoice::Duplicate);
	EXPECT_EQ(Resolve(EChoice::Duplicate, false), EChoice::Duplicate);
	EXPECT_EQ(Resolve(EChoice::Cancel, true), EChoice::Cancel);
	EXPECT_EQ(Resolve(EChoice::Cancel, false), EChoice::Cancel);
}

TEST(RememberedAnswer, HasTheseNumbers)
{
	EXPECT_EQ(static_cast<int>(ETarvinSharedAssetChoice::Duplicate), 0);
	EXPECT_EQ(static_cast<int>(ETarvinSharedAssetChoice::ApplyToAll), 1);
	EXPECT_EQ(static_cast<int>(ETarvinSharedAssetChoice::Cancel), 2);
}
}
