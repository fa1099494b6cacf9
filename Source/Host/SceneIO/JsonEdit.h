// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/JsonText.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Edits of a JSON text, kept beside it and applied as splices: what no edit touches keeps every byte, blanks and
/// digits included. New members and elements are set apart with the blanks that stand before their neighbours.
///
/// An edit within a value that is itself replaced or removed has no effect.
class FJsonEdit
{
public:
	/// `InText` must outlive the edit.
	explicit FJsonEdit(const FJsonText& InText)
		: Text(&InText)
	{
	}

	bool IsEmpty() const { return Replacements.empty() && Containers.empty(); }

	/// Puts `NewText`, one JSON value, in the place of a value. The last one counts.
	void Replace(FJsonIndex Value, std::string NewText);
	/// Replaces the member's value, or adds the member at the end of the object.
	void SetMember(FJsonIndex Object, std::string_view Key, std::string NewText);
	/// Does nothing where there is no such member.
	void RemoveMember(FJsonIndex Object, std::string_view Key);
	/// Adds an element at the end of an array.
	void AppendElement(FJsonIndex Array, std::string NewText);

	/// `Element` must be one of the array's own.
	void RemoveElement(FJsonIndex Array, FJsonIndex Element);

	/// The new text of `Value`, without what stands around it.
	std::string Apply(FJsonIndex Value) const;
	/// The whole new text, with what stands around the root.
	std::string ApplyAll() const;

private:
	struct FContainerEdit
	{
		std::set<FJsonIndex> Removed;                           ///< values of members, or elements
		std::vector<std::pair<std::string, std::string>> Added; ///< keys (empty in an array) and texts
	};
	struct FSplice
	{
		std::uint32_t Begin = 0;
		std::uint32_t End = 0;
		std::string_view Text;
		std::string Owned; ///< holds the text where it was put together
	};

	void CollectSplices(FJsonIndex Root, std::vector<FSplice>& Out) const;
	void SpliceContainer(FJsonIndex Container, const FContainerEdit& Edit, std::vector<FSplice>& Out) const;
	void SpliceAdded(FJsonIndex Container, const FContainerEdit& Edit, std::vector<FSplice>& Out) const;
	std::string Spliced(FJsonIndex Root, std::uint32_t Begin, std::uint32_t End) const;

	const FJsonText* Text;
	std::map<FJsonIndex, std::string> Replacements;
	std::map<FJsonIndex, FContainerEdit> Containers;
};
