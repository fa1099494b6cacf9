// SPDX-License-Identifier: MIT
#include "SceneIO/JsonEdit.h"

#include "SceneIO/JsonWrite.h"

#include <algorithm>

namespace
{
/// A child of a container with the place where it begins, its key included.
struct FChild
{
	FJsonIndex Value;
	std::uint32_t Begin;
	std::uint32_t End;
};

std::vector<FChild> ChildrenOf(const FJsonText& Text, FJsonIndex Container)
{
	std::vector<FChild> Out;
	for (const FJsonMember& Member : Text.Members(Container))
	{
		Out.push_back({Member.Value, Text.Span(Member.Key).Begin, Text.Span(Member.Value).End});
	}
	for (const FJsonIndex Element : Text.Elements(Container))
	{
		Out.push_back({Element, Text.Span(Element).Begin, Text.Span(Element).End});
	}
	return Out;
}

/// The blanks that end at `At`.
std::string_view BlanksBefore(const std::string& Text, std::uint32_t At)
{
	std::uint32_t Begin = At;
	while (Begin > 0 && std::string_view(" \t\r\n").find(Text[Begin - 1]) != std::string_view::npos)
	{
		--Begin;
	}
	return std::string_view(Text).substr(Begin, At - Begin);
}
}

void FJsonEdit::Replace(FJsonIndex Value, std::string NewText)
{
	Replacements[Value] = std::move(NewText);
}

void FJsonEdit::SetMember(FJsonIndex Object, std::string_view Key, std::string NewText)
{
	const FJsonIndex Value = Text->Find(Object, Key);
	if (Value != NoJson)
	{
		if (const auto Edit = Containers.find(Object); Edit != Containers.end())
		{
			Edit->second.Removed.erase(Value);
		}
		Replace(Value, std::move(NewText));
		return;
	}
	std::vector<std::pair<std::string, std::string>>& Added = Containers[Object].Added;
	const auto Same = std::find_if(Added.begin(), Added.end(), [Key](const auto& Pair) { return Pair.first == Key; });
	if (Same != Added.end())
	{
		Same->second = std::move(NewText);
		return;
	}
	Added.emplace_back(Key, std::move(NewText));
}

void FJsonEdit::RemoveMember(FJsonIndex Object, std::string_view Key)
{
	const FJsonIndex Value = Text->Find(Object, Key);
	if (Value != NoJson)
	{
		Containers[Object].Removed.insert(Value);
	}
	else if (const auto Edit = Containers.find(Object); Edit != Containers.end())
	{
		std::erase_if(Edit->second.Added, [Key](const auto& Pair) { return Pair.first == Key; });
	}
}

void FJsonEdit::AppendElement(FJsonIndex Array, std::string NewText)
{
	Containers[Array].Added.emplace_back(std::string(), std::move(NewText));
}

std::string FJsonEdit::Apply(FJsonIndex Value) const
{
	return Spliced(Value, Text->Span(Value).Begin, Text->Span(Value).End);
}

std::string FJsonEdit::ApplyAll() const
{
	return Spliced(Text->Root(), 0, static_cast<std::uint32_t>(Text->Text().size()));
}

void FJsonEdit::RemoveElement(FJsonIndex Array, FJsonIndex Element)
{
	Containers[Array].Removed.insert(Element);
}

void FJsonEdit::SpliceAdded(FJsonIndex Container, const FContainerEdit& Edit, std::vector<FSplice>& Out) const
{
	const std::string& Source = Text->Text();
	const std::vector<FChild> Children = ChildrenOf(*Text, Container);
	const auto LastKept = std::find_if(Children.rbegin(), Children.rend(),
		[&Edit](const FChild& Child) { return !Edit.Removed.contains(Child.Value); });
	const bool bAnyKept = LastKept != Children.rend();

	// Set apart like the last child that was there, removed or not.
	const std::string_view Blanks = Children.empty() ? std::string_view() : BlanksBefore(Source, Children.back().Begin);
	std::string_view Colon = ":";
	if (Text->IsObject(Container) && !Children.empty())
	{
		const FJsonIndex Value = Children.back().Value;
		const std::uint32_t KeyEnd = Text->Span(Value - 1).End;
		Colon = std::string_view(Source).substr(KeyEnd, Text->Span(Value).Begin - KeyEnd);
	}
	FSplice Splice;
	std::size_t Size = 0;
	for (const auto& [Key, NewText] : Edit.Added)
	{
		Size += Key.size() + NewText.size() + Blanks.size() + Colon.size() + 3;
	}
	Splice.Owned.reserve(Size);
	for (const auto& [Key, NewText] : Edit.Added)
	{
		const bool bFirst = Splice.Owned.empty();
		if (bAnyKept || !bFirst)
		{
			Splice.Owned += ',';
			Splice.Owned += Blanks;
		}
		if (Text->IsObject(Container))
		{
			Splice.Owned += JsonWrite::String(Key);
			Splice.Owned += Colon;
		}
		Splice.Owned += NewText;
	}
	if (bAnyKept)
	{
		Splice.Begin = LastKept->End;
		Splice.End = LastKept->End;
	}
	else
	{
		// Everything that was there, if anything, makes room.
		Splice.Begin = Children.empty() ? Text->Span(Container).Begin + 1 : Children.front().Begin;
		Splice.End = Children.empty() ? Splice.Begin : Children.back().End;
	}
	Out.push_back(std::move(Splice));
}

void FJsonEdit::SpliceContainer(FJsonIndex Container, const FContainerEdit& Edit, std::vector<FSplice>& Out) const
{
	if (Edit.Added.empty() && Edit.Removed.empty())
	{
		return;
	}
	const std::vector<FChild> Children = ChildrenOf(*Text, Container);
	const auto IsRemoved = [&](std::size_t I) { return Edit.Removed.contains(Children[I].Value); };
	SpliceAdded(Container, Edit, Out);
	if (Edit.Removed.size() == Children.size())
	{
		return; // the added text, empty or not, has taken their place
	}
	for (std::size_t I = 0; I < Children.size(); ++I)
	{
		if (!IsRemoved(I))
		{
			continue;
		}
		std::size_t Last = I;
		while (Last + 1 < Children.size() && IsRemoved(Last + 1))
		{
			++Last;
		}
		// A comma goes along: the one before, or at the start of the container the one after.
		FSplice Splice;
		Splice.Begin = I > 0 ? Children[I - 1].End : Children[I].Begin;
		Splice.End = I > 0 ? Children[Last].End : Children[Last + 1].Begin;
		Out.push_back(std::move(Splice));
		I = Last;
	}
}

void FJsonEdit::CollectSplices(FJsonIndex Root, std::vector<FSplice>& Out) const
{
	const FJsonIndex Last = Text->End(Root);
	auto Replacement = Replacements.lower_bound(Root);
	auto Container = Containers.lower_bound(Root);
	std::set<FJsonIndex> Removed;
	FJsonIndex SkipUntil = Root;
	while (true)
	{
		const FJsonIndex NextReplacement = Replacement == Replacements.end() ? NoJson : Replacement->first;
		const FJsonIndex NextContainer = Container == Containers.end() ? NoJson : Container->first;
		const FJsonIndex Next = std::min({NextReplacement, NextContainer, Removed.empty() ? NoJson : *Removed.begin()});
		if (Next >= Last)
		{
			return;
		}
		const bool bSkip = Next < SkipUntil;
		const bool bRemoved = Removed.erase(Next) > 0;
		if (bRemoved && !bSkip)
		{
			SkipUntil = Text->End(Next);
		}
		if (Next == NextReplacement)
		{
			if (!bSkip && !bRemoved)
			{
				FSplice Splice;
				Splice.Begin = Text->Span(Next).Begin;
				Splice.End = Text->Span(Next).End;
				Splice.Text = Replacement->second;
				Out.push_back(std::move(Splice));
				SkipUntil = Text->End(Next);
			}
			++Replacement;
		}
		if (Next == NextContainer)
		{
			if (Next >= SkipUntil)
			{
				SpliceContainer(Next, Container->second, Out);
				Removed.insert(Container->second.Removed.begin(), Container->second.Removed.end());
			}
			++Container;
		}
	}
}

std::string FJsonEdit::Spliced(FJsonIndex Root, std::uint32_t Begin, std::uint32_t End) const
{
	std::vector<FSplice> Splices;
	CollectSplices(Root, Splices);
	// At one place what is added comes before what is taken away.
	std::stable_sort(Splices.begin(), Splices.end(),
		[](const FSplice& A, const FSplice& B) { return A.Begin != B.Begin ? A.Begin < B.Begin : A.End < B.End; });

	std::size_t Size = End - Begin;
	for (const FSplice& Splice : Splices)
	{
		Size += Splice.Text.size() + Splice.Owned.size();
	}
	std::string Out;
	Out.reserve(Size);
	const std::string_view Source = Text->Text();
	std::uint32_t At = Begin;
	for (const FSplice& Splice : Splices)
	{
		Out += Source.substr(At, Splice.Begin - At);
		Out += Splice.Owned;
		Out += Splice.Text;
		At = Splice.End;
	}
	Out += Source.substr(At, End - At);
	return Out;
}
