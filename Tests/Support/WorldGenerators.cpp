// SPDX-License-Identifier: MIT
#include "Support/WorldGenerators.h"

#include "Support/TestActors.h"

#include <tuple>

void showValue(const FTreePlan& Plan, std::ostream& Out)
{
	for (std::size_t Index = 0; Index < Plan.Nodes.size(); ++Index)
	{
		const FTreePlan::FNode& Node = Plan.Nodes[Index];
		Out << Index << " on " << Node.Parent << (Node.bOwnActor ? "" : " (same actor)") << " mesh " << Node.Mesh
			<< ": ";
		showValue(Node.Relative, Out);
		Out << "\n";
	}
}

rc::Gen<int32> WorldGenerators::Index(int32 Count)
{
	return rc::gen::resize(rc::kNominalSize, rc::gen::inRange<int32>(0, Count));
}

rc::Gen<FTransform> WorldGenerators::AnyTransform()
{
	return MathGenerators::Transform(MathGenerators::NonZeroScale(0.25, 4.0));
}

rc::Gen<FTreePlan> WorldGenerators::Tree(int32 MaxNodes, rc::Gen<FTransform> Relative)
{
	using FChoice = std::tuple<int32, bool, int32, FTransform>;
	const auto Node = rc::gen::tuple(Index(1000), rc::gen::arbitrary<bool>(), Index(1000), std::move(Relative));
	return rc::gen::map(rc::gen::container<std::vector<FChoice>>(Node),
		[MaxNodes](std::vector<FChoice> Choices)
		{
			FTreePlan Plan;
			for (const auto& [Parent, bOwnActor, Mesh, Transform] : Choices)
			{
				const int32 Num = int32(Plan.Nodes.size());
				if (Num == MaxNodes)
				{
					break;
				}
				const bool bRoot = Num == 0 || Parent % 4 == 0;
				Plan.Nodes.push_back({bRoot ? INDEX_NONE : Parent % Num, bRoot || bOwnActor, Mesh, Transform});
			}
			return Plan;
		});
}

std::vector<UStaticMeshComponent*> BuildTree(
	UWorld* World, const FTreePlan& Plan, const std::vector<UStaticMesh*>& Meshes)
{
	std::vector<UStaticMeshComponent*> Components;
	for (const FTreePlan::FNode& Node : Plan.Nodes)
	{
		UStaticMesh* const Mesh = Meshes.empty() ? nullptr : Meshes[std::size_t(Node.Mesh) % Meshes.size()];
		UStaticMeshComponent* const Parent = Node.Parent == INDEX_NONE ? nullptr : Components[std::size_t(Node.Parent)];
		Components.push_back(Node.bOwnActor || !Parent ? MakeActor(World, Mesh, Node.Relative, Parent)
													   : AddMeshComponent(Parent, Mesh, Node.Relative));
	}
	return Components;
}
