// SPDX-License-Identifier: MIT
#include "ContractHost.h"

#include "CoreUObject/Package.h"
#include "MeshDescription/MeshDescription.h"
#include "Slate/HeadlessBackend.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/ThrowingAssertions.h"
#include "ToolMenus/ToolMenus.h"

FContractTest::FContractTest()
{
	DestroyEditorAndAssets();
	UEditorEngine::Create();
	FSlateApplication::Create(MakeShared<FHeadlessSlateBackend>());
	UToolMenus::StartUp();
}

FContractTest::~FContractTest()
{
	UToolMenus::ShutDown();
	FSlateApplication::Shutdown();
	FSlateNotificationManager::Get().Clear();
	DestroyEditorAndAssets();
}

UStaticMeshComponent* FContractTest::MakeComponent(UStaticMesh* Mesh, USceneComponent* Parent)
{
	return MakeActor(GEditor->GetEditorWorldContext().World(), Mesh, FTransform(), Parent);
}

UStaticMesh* FContractTest::MakeEmptyMesh(const TCHAR* Name)
{
	UPackage* const Package = CreatePackage(FString(TEXT("/Contract")) / Name);
	UStaticMesh* const Mesh = NewObject<UStaticMesh>(Package, Name);
	Package->AddAsset(Mesh);
	return Mesh;
}

UStaticMesh* FContractTest::MakeMesh(const TCHAR* Name)
{
	FMeshDescription Description;
	Description.AddAttributes(EVertexInstanceAttributes::All);
	FTriangleCorners Corners;
	const FVector3f Positions[] = {{0.f, 0.f, 0.f}, {3.f, 0.f, 0.f}, {0.f, 5.f, 0.f}};
	for (std::size_t Corner = 0; Corner < 3; ++Corner)
	{
		Corners[Corner] = Description.CreateVertexInstance(Description.CreateVertex(Positions[Corner]));
		Description.SetVertexInstanceNormal(Corners[Corner], {0.f, 0.f, 1.f});
		Description.SetVertexInstanceTangent(Corners[Corner], {1.f, 0.f, 0.f});
		Description.SetVertexInstanceBinormalSign(Corners[Corner], 1.f);
	}
	Description.CreateTriangle(Description.CreatePolygonGroup(), Corners);
	UStaticMesh* const Mesh = MakeEmptyMesh(Name);
	Mesh->SetMeshDescription(0, std::move(Description));
	Mesh->GetOutermost()->SetDirtyFlag(false);
	return Mesh;
}

bool FContractTest::PressWithControl(const TCHAR* KeyName)
{
	return FSlateApplication::Get().ProcessKeyDownEvent(
		FKeyEvent(FKey(KeyName), FModifierKeysState::FromMask(EModifierKey::Control)));
}

std::vector<std::string> FContractTest::FailedChecks(const std::function<void()>& Work)
{
	const FThrowingAssertions Throwing;
	try
	{
		Work();
	}
	catch (const FAssertionFailed& Failure)
	{
		const std::string Message = Failure.Message().ToUtf8();
		return {Message.empty() ? Failure.Expression() : Message};
	}
	return {};
}
