// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "Core/Text.h"
#include "CoreUObject/Package.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"

FModuleTest::FModuleTest()
	: Backend(MakeShared<FHeadlessSlateBackend>())
{
	FSlateApplication::Create(Backend);
}

FModuleTest::~FModuleTest()
{
	FSlateApplication::Shutdown();
	FSlateNotificationManager::Get().Clear();
}

UStaticMesh* FModuleTest::MakeMesh(const TCHAR* Name, FMeshDescription&& Lod0)
{
	UStaticMesh* const Mesh = MakeMesh(Name);
	Mesh->SetMeshDescription(0, std::move(Lod0));
	return Mesh;
}

UStaticMesh* FModuleTest::MakeMesh(const TCHAR* Name)
{
	return MakeBoxMesh(FVector(-2, -3, 0), FVector(5, 7, 11), FString(TEXT("/Yard/Props")) / Name);
}

UStaticMeshComponent* FModuleTest::Place(UStaticMesh* Mesh, const FTransform& Where)
{
	return MakeActor(World(), Mesh, Where);
}

UStaticMeshComponent* FModuleTest::PlaceSelected(UStaticMesh* Mesh, const FTransform& Where)
{
	UStaticMeshComponent* const Component = Place(Mesh, Where);
	Select(Component);
	return Component;
}

USceneComponent* FModuleTest::PlaceFrame(const FTransform& Where)
{
	USceneComponent* const Component = World()->SpawnActor<AActor>()->AddComponent<USceneComponent>();
	Component->SetWorldTransform(Where);
	return Component;
}

std::vector<std::string> FModuleTest::Lines(const TCHAR* Category) const
{
	std::vector<std::string> Result;
	for (const FLogRecord& Record : Log.Records())
	{
		if (Record.Category == FName(Category))
		{
			Result.push_back(Utf8(ToString(Record.Verbosity)) + ": " + Utf8(Record.Message));
		}
	}
	return Result;
}

std::vector<std::string> FModuleTest::Toasts()
{
	std::vector<std::string> Result;
	for (const TSharedRef<SNotificationItem>& Item : FSlateNotificationManager::Get().GetNotifications())
	{
		Result.push_back(Utf8(Item->GetText().ToString()));
	}
	return Result;
}

TArray<FVector> HiResPositionsOf(const UStaticMesh* Mesh)
{
	TArray<FVector> Result;
	if (const FMeshDescription* const Description = Mesh->GetHiResMeshDescription())
	{
		for (const FVertexID Vertex : Description->Vertices().GetElementIDs())
		{
			Result.Add(FVector(Description->GetVertexPosition(Vertex)));
		}
	}
	return Result;
}

TArray<FVector> Transformed(const TArray<FVector>& Points, const FTransform& Transform)
{
	TArray<FVector> Result;
	for (const FVector& Point : Points)
	{
		Result.Add(Transform.TransformPosition(Point));
	}
	return Result;
}

testing::AssertionResult Near(const FVector& Actual, const FVector& Expected, double Tolerance)
{
	if (Actual.Equals(Expected, Tolerance))
	{
		return testing::AssertionSuccess();
	}
	return testing::AssertionFailure() << Utf8(Actual.ToString()) << " instead of " << Utf8(Expected.ToString());
}

testing::AssertionResult Near(const TArray<FVector>& Actual, const TArray<FVector>& Expected, double Tolerance)
{
	if (Actual.IsEmpty() || Actual.Num() != Expected.Num())
	{
		return testing::AssertionFailure() << Actual.Num() << " points instead of " << Expected.Num();
	}
	for (int32 Index = 0; Index < Actual.Num(); ++Index)
	{
		if (const testing::AssertionResult Result = Near(Actual[Index], Expected[Index], Tolerance); !Result)
		{
			return testing::AssertionFailure() << "point " << Index << ": " << Result.message();
		}
	}
	return testing::AssertionSuccess();
}

testing::AssertionResult Near(const FTransform& Actual, const FTransform& Expected, double Tolerance)
{
	if (Actual.Equals(Expected, Tolerance))
	{
		return testing::AssertionSuccess();
	}
	return testing::AssertionFailure() << Utf8(Actual.ToString()) << " instead of " << Utf8(Expected.ToString());
}

FQuat Turn(const FVector& Axis, double Degrees)
{
	return FQuat(Axis, FMath::DegreesToRadians(Degrees));
}
