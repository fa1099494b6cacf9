// SPDX-License-Identifier: MIT
// What the module expects of strings, texts, callables, delegates, maths and the module manager of its host.
#include "ContractHost.h"

namespace
{
class CoreContract : public FContractTest
{
};

int32 AnswerTwice(int32 Value, bool bNegative)
{
	return (bNegative ? -2 : 2) * Value;
}

TEST_F(CoreContract, PrintfWritesWholeNumbersWideTextAndThreeDecimals)
{
	EXPECT_EQ(FString::Printf(TEXT("%s \u00B7 %d%%"), TEXT("stone \u00e9"), -7), TEXT("stone \u00e9 \u00B7 -7%"));
	EXPECT_EQ(FString::Printf(TEXT("X=%3.3f"), -1234.5678), TEXT("X=-1234.568"));
	EXPECT_EQ(FVector(1, -2.5, 1.e-8).ToString(), TEXT("X=1.000 Y=-2.500 Z=0.000"));
}

TEST_F(CoreContract, StringsAreFoundAndComparedWithoutRegardToCaseWhereAsked)
{
	EXPECT_TRUE(FString(TEXT("SMultiLineEditableTextBox")).Contains(TEXT("editabletext"), ESearchCase::IgnoreCase));
	EXPECT_TRUE(FString(TEXT("TARVINtransform")).Equals(TEXT("TarvinTransform"), ESearchCase::IgnoreCase));
	EXPECT_EQ(FString(TEXT("/Folder")) / TEXT("Rock") + TEXT("_Baked"), TEXT("/Folder/Rock_Baked"));
}

TEST_F(CoreContract, TextsCarryNamespaceKeyAndSourceAndPatternsTakeNumbersInBraces)
{
	const FText Text = NSLOCTEXT("Contract", "Pattern", "'{0}' is used by {1}");
	EXPECT_EQ(Text.GetNamespace(), TEXT("Contract"));
	EXPECT_EQ(Text.GetKey(), TEXT("Pattern"));
	EXPECT_EQ(
		FText::Format(Text, FText::FromString(TEXT("{1}")), FText::AsNumber(3)).ToString(), TEXT("'{1}' is used by 3"));
	EXPECT_TRUE(FText().IsEmpty());
}

TEST_F(CoreContract, CallablesAreClonedByCopyEmptiedByMoveConstructionAndExchangedByMoveAssignment)
{
	TFunction<int32()> Source = [Count = 0]() mutable { return ++Count; };
	const TFunction<int32()> Copy = Source;
	EXPECT_EQ(Source() + Source(), 3);
	EXPECT_EQ(Copy(), 1);
	TFunction<int32()> Target(std::move(Source));
	EXPECT_FALSE(Source);
	TFunction<int32()> Other = [] { return 100; };
	Target = std::move(Other);
	EXPECT_EQ(Target(), 100);
	EXPECT_EQ(Other(), 3);
}

TEST_F(CoreContract, SingleCastDelegateHandsOnArgumentsPayloadAndAnswer)
{
	TDelegate<int32(int32)> Delegate;
	EXPECT_FALSE(Delegate.IsBound());
	Delegate.BindStatic(&AnswerTwice, true);
	EXPECT_TRUE(Delegate.IsBound());
	EXPECT_EQ(Delegate.Execute(3), -6);
	int32 Seen = 0;
	Delegate.BindLambda([&Seen](int32 Value) { return Seen = Value; });
	EXPECT_EQ(Delegate.Execute(5), 5);
	EXPECT_EQ(Seen, 5);
	Delegate.Unbind();
	EXPECT_FALSE(Delegate.IsBound());
}

TEST_F(CoreContract, TransformScalesThenTurnsThenMovesAndProductsRunFromLeftToRight)
{
	const FQuat Quarter(FVector(0, 0, 1), FMath::DegreesToRadians(90.0));
	const FTransform First(Quarter, FVector(7, -8, 9), FVector(2, 3, -5));
	EXPECT_TRUE(First.TransformPosition(FVector(1, 2, 3)).Equals(FVector(1, -6, -6), 1.e-12));
	const FTransform Mirror(FQuat::Identity, FVector(1, 1, 1), FVector(-2, 2, 2));
	const FVector Point(3, 5, 7);
	EXPECT_TRUE((First * Mirror)
					.TransformPosition(Point)
					.Equals(Mirror.TransformPosition(First.TransformPosition(Point)), 1.e-12));
	EXPECT_EQ(FTransform(), FTransform(FQuat::Identity, FVector(0, 0, 0), FVector(1, 1, 1)));
}

TEST_F(CoreContract, MatrixOfATransformTakesRowVectorsAndRefusesRotationsThatAreNotNormalised)
{
	const FTransform Transform(FRotator(10, 20, 30), FVector(7, -8, 9), FVector(2, 3, -5));
	const FVector Point(3, 5, 7);
	EXPECT_TRUE(
		Transform.ToMatrixWithScale().TransformPosition(Point).Equals(Transform.TransformPosition(Point), 1.e-12));
	EXPECT_EQ(FailedChecks([] { FTransform(FQuat(0, 0, 0, 1.1)).ToMatrixWithScale(); }),
		(std::vector<std::string>{"IsRotationNormalized()"}));
	EXPECT_TRUE(FailedChecks([] { FTransform(FQuat(0, 0, 0, 1.004)).ToMatrixWithScale(); }).empty());
}

TEST_F(CoreContract, EditorModulesAreLoadedByNameAndAMissingOneIsFatalAndNamed)
{
	FModuleManager& Manager = FModuleManager::Get();
	for (const TCHAR* Name : {TEXT("LevelEditor"), TEXT("AssetTools")})
	{
		const IModuleInterface& Module = Manager.LoadModuleChecked(Name);
		EXPECT_EQ(Manager.GetModule(Name), &Module);
		EXPECT_TRUE(Manager.IsModuleLoaded(Name));
	}
	const std::vector<std::string> Failed = FailedChecks([&] { Manager.LoadModuleChecked(TEXT("NoSuchModule")); });
	ASSERT_EQ(Failed.size(), 1u);
	EXPECT_NE(Failed[0].find("NoSuchModule"), std::string::npos) << Failed[0];
}
}
