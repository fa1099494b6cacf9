// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "CoreUObject/GarbageCollector.h"
#include "Editor/ScopedTransaction.h"
#include "Engine/StaticMeshSocket.h"
#include "TarvinTransformOp.h"

namespace
{
using FLines = std::vector<std::string>;

FTransform Scaled(double X, double Y, double Z)
{
	return FTransform(FQuat::Identity, FVector(), FVector(X, Y, Z));
}

class SocketBake : public FModuleTest
{
protected:
	UStaticMeshSocket* AddSocket(const TCHAR* Name, const FVector& Location, const FRotator& Rotation = FRotator(),
		const FVector& Scale = FVector(1, 1, 1))
	{
		UStaticMeshSocket* const Socket = Rock->AddSocket(Name);
		Socket->RelativeLocation = Location;
		Socket->RelativeRotation = Rotation;
		Socket->RelativeScale = Scale;
		return Socket;
	}

	bool Bake(const FTransform& Transform)
	{
		Stats = FTarvinTransformStats();
		return FTarvinTransformOp::BakeIntoMesh(Rock, Transform, {}, Stats);
	}

	static FTransform Placement(const UStaticMeshSocket* Socket)
	{
		return FTransform(Socket->RelativeRotation, Socket->RelativeLocation, Socket->RelativeScale);
	}

	UStaticMesh* Rock = MakeMesh(TEXT("Rock"));
	FTarvinTransformStats Stats;
};

TEST_F(SocketBake, SocketMovesWithTheTurnAndGainsIt)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(0, 0, 10));
	const FQuat QuarterTurn = Turn(FVector(1, 0, 0), 90);
	EXPECT_TRUE(Bake(FTransform(QuarterTurn)));
	EXPECT_TRUE(Near(Socket->RelativeLocation, FVector(0, -10, 0), 1.e-9));
	EXPECT_TRUE(Socket->RelativeRotation.Quaternion().Equals(QuarterTurn, 1.e-9));
	EXPECT_EQ(Socket->RelativeScale, FVector(1, 1, 1));
	EXPECT_EQ(Stats.NumSocketsBaked, 1);
	EXPECT_FALSE(Stats.bSocketsApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(SocketBake, PlacementIsTheOldOneThenTheBake)
{
	UStaticMeshSocket* const Socket =
		AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(10, 20, 30), FVector(0.5, 0.25, 2));
	const FTransform Before = Placement(Socket);
	const FTransform Move(Turn(FVector(1, 2, 3).GetSafeNormal(), 50), FVector(7, -8, 9), FVector(3, 3, 3));
	EXPECT_TRUE(Bake(Move));
	EXPECT_TRUE(Near(Placement(Socket), Before * Move, 1.e-9));
	for (const FVector Point : {FVector(1, 0, 0), FVector(0, 1, 0), FVector(2, 3, 5)})
	{
		EXPECT_TRUE(Near(Placement(Socket).TransformPosition(Point),
			Move.TransformPosition(Before.TransformPosition(Point)), 1.e-9));
	}
	EXPECT_FALSE(Stats.bSocketsApproximate);
}

TEST_F(SocketBake, MirrorIsExactForTurnedSockets)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(10, 20, 30));
	const FTransform Before = Placement(Socket);
	EXPECT_TRUE(Bake(Scaled(-2, 2, 2)));
	const FVector Point(2, 3, 5);
	EXPECT_TRUE(Near(Placement(Socket).TransformPosition(Point),
		Scaled(-2, 2, 2).TransformPosition(Before.TransformPosition(Point)), 1.e-9));
	EXPECT_FALSE(Stats.bSocketsApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(SocketBake, UnturnedSocketUnderUnevenScaleRaisesNoWarning)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(0, 0, 0));
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_EQ(Socket->RelativeLocation, FVector(1, 4, 9));
	EXPECT_EQ(Socket->RelativeScale, FVector(1, 2, 3));
	EXPECT_FALSE(Stats.bSocketsApproximate);
	EXPECT_TRUE(OpLines().empty());
}

TEST_F(SocketBake, EveryTurnedSocketUnderUnevenScaleIsComposedAndReported)
{
	UStaticMeshSocket* const Handle = AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(0, 45, 0));
	AddSocket(TEXT("Plain"), FVector(4, 5, 6));
	AddSocket(TEXT("Hinge"), FVector(7, 8, 9), FRotator(0, 0, 1.1e-4));
	AddSocket(TEXT("WholeTurn"), FVector(7, 8, 9), FRotator(360, -360, 9.e-5));
	const FTransform Before = Placement(Handle);
	EXPECT_TRUE(Bake(Scaled(1, 2, 3)));
	EXPECT_TRUE(Near(Placement(Handle), Before * Scaled(1, 2, 3), 1.e-9));
	EXPECT_TRUE(Stats.bSocketsApproximate);
	EXPECT_EQ(Stats.NumSocketsBaked, 4);
	EXPECT_EQ(OpLines(),
		(FLines{"Warning: Rock: socket 'Handle' is rotated and the bake scale is non-uniform -- result is approximate",
			"Warning: Rock: socket 'Hinge' is rotated and the bake scale is non-uniform -- result is approximate"}));
}

TEST_F(SocketBake, NullAndCollectedEntriesArePassedOver)
{
	AddSocket(TEXT("Gone"), FVector(1, 2, 3));
	Rock->Sockets.Add(nullptr);
	UStaticMeshSocket* const Kept = AddSocket(TEXT("Kept"), FVector(1, 2, 3));
	Rock->Sockets[0]->MarkAsGarbage();
	ASSERT_TRUE(CollectGarbage());
	EXPECT_TRUE(Bake(Scaled(2, 2, 2)));
	EXPECT_EQ(Stats.NumSocketsBaked, 1);
	EXPECT_EQ(Kept->RelativeLocation, FVector(2, 4, 6));
	EXPECT_EQ(Rock->Sockets.Num(), 3);
}

TEST_F(SocketBake, SocketsStayWhenTheyAreNotWanted)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(1, 2, 3));
	EXPECT_TRUE(FTarvinTransformOp::BakeIntoMesh(Rock, Scaled(2, 2, 2), {true, true, false}, Stats));
	EXPECT_EQ(Socket->RelativeLocation, FVector(1, 2, 3));
	EXPECT_EQ(Stats.NumSocketsBaked, 0);
}

TEST_F(SocketBake, UndoBringsTheSocketsBack)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(10, 20, 30));
	const FTransform Before = Placement(Socket);
	{
		const FScopedTransaction Transaction(TEXT("Test"), FText(), nullptr);
		EXPECT_TRUE(Bake(FTransform(Turn(FVector(0, 1, 0), 33), FVector(1, 2, 3), FVector(2, 3, 5))));
	}
	ASSERT_TRUE(Transactions().Undo());
	EXPECT_EQ(Placement(Socket), Before);
}

TEST_F(SocketBake, PivotShiftCarriesSocketsByTheSameShift)
{
	UStaticMeshSocket* const Socket = AddSocket(TEXT("Handle"), FVector(1, 2, 3), FRotator(10, 20, 30));
	const FQuat Rotation = Socket->RelativeRotation.Quaternion();
	EXPECT_TRUE(Bake(FTransform(FVector(-7, 8, -9))));
	EXPECT_EQ(Socket->RelativeLocation, FVector(-6, 10, -6));
	EXPECT_TRUE(Socket->RelativeRotation.Quaternion().Equals(Rotation, 1.e-12));
}
}
