// SPDX-License-Identifier: MIT
#include "NodeNames.h"

#include <fnmatch.h>

std::string NodeName(const FGltfDocument& Document, FGltfIndex Node)
{
	const std::string& Name = Document.Node(Node).Name;
	return Name.empty() ? "node " + std::to_string(Node) : Name;
}

std::string NodePath(const FGltfDocument& Document, FGltfIndex Node)
{
	std::string Path = NodeName(Document, Node);
	for (FGltfIndex Up = Document.Node(Node).Parent; Up != NoIndex; Up = Document.Node(Up).Parent)
	{
		Path = NodeName(Document, Up) + "/" + Path;
	}
	return Path;
}

FNodeChoice ChooseNodes(const FGltfDocument& Document, const std::vector<std::string>& Patterns)
{
	const std::size_t NumNodes = Document.Model().Nodes.size();
	FNodeChoice Choice;
	Choice.bChosen.assign(NumNodes, Patterns.empty());
	for (const std::string& Pattern : Patterns)
	{
		const bool bPath = Pattern.find('/') != std::string::npos;
		bool bMatched = false;
		for (std::size_t Node = 0; Node < NumNodes; ++Node)
		{
			const std::string Name =
				bPath ? NodePath(Document, FGltfIndex(Node)) : NodeName(Document, FGltfIndex(Node));
			if (fnmatch(Pattern.c_str(), Name.c_str(), 0) == 0)
			{
				bMatched = true;
				Choice.bChosen[Node] = true;
			}
		}
		if (!bMatched && !Choice.Unmatched)
		{
			Choice.Unmatched = Pattern;
		}
	}
	return Choice;
}
