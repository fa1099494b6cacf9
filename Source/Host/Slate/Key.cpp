// SPDX-License-Identifier: MIT
#include "Slate/Key.h"

#include "Core/Map.h"

// Every key once: its name, what users read, and its kind.
#define FOR_EACH_KEY(KEY)                                \
	KEY(A, "A", Plain)                                   \
	KEY(B, "B", Plain)                                   \
	KEY(C, "C", Plain)                                   \
	KEY(D, "D", Plain)                                   \
	KEY(E, "E", Plain)                                   \
	KEY(F, "F", Plain)                                   \
	KEY(G, "G", Plain)                                   \
	KEY(H, "H", Plain)                                   \
	KEY(I, "I", Plain)                                   \
	KEY(J, "J", Plain)                                   \
	KEY(K, "K", Plain)                                   \
	KEY(L, "L", Plain)                                   \
	KEY(M, "M", Plain)                                   \
	KEY(N, "N", Plain)                                   \
	KEY(O, "O", Plain)                                   \
	KEY(P, "P", Plain)                                   \
	KEY(Q, "Q", Plain)                                   \
	KEY(R, "R", Plain)                                   \
	KEY(S, "S", Plain)                                   \
	KEY(T, "T", Plain)                                   \
	KEY(U, "U", Plain)                                   \
	KEY(V, "V", Plain)                                   \
	KEY(W, "W", Plain)                                   \
	KEY(X, "X", Plain)                                   \
	KEY(Y, "Y", Plain)                                   \
	KEY(Z, "Z", Plain)                                   \
	KEY(Zero, "0", Plain)                                \
	KEY(One, "1", Plain)                                 \
	KEY(Two, "2", Plain)                                 \
	KEY(Three, "3", Plain)                               \
	KEY(Four, "4", Plain)                                \
	KEY(Five, "5", Plain)                                \
	KEY(Six, "6", Plain)                                 \
	KEY(Seven, "7", Plain)                               \
	KEY(Eight, "8", Plain)                               \
	KEY(Nine, "9", Plain)                                \
	KEY(F1, "F1", Plain)                                 \
	KEY(F2, "F2", Plain)                                 \
	KEY(F3, "F3", Plain)                                 \
	KEY(F4, "F4", Plain)                                 \
	KEY(F5, "F5", Plain)                                 \
	KEY(F6, "F6", Plain)                                 \
	KEY(F7, "F7", Plain)                                 \
	KEY(F8, "F8", Plain)                                 \
	KEY(F9, "F9", Plain)                                 \
	KEY(F10, "F10", Plain)                               \
	KEY(F11, "F11", Plain)                               \
	KEY(F12, "F12", Plain)                               \
	KEY(NumPadZero, "Num 0", Keypad)                     \
	KEY(NumPadOne, "Num 1", Keypad)                      \
	KEY(NumPadTwo, "Num 2", Keypad)                      \
	KEY(NumPadThree, "Num 3", Keypad)                    \
	KEY(NumPadFour, "Num 4", Keypad)                     \
	KEY(NumPadFive, "Num 5", Keypad)                     \
	KEY(NumPadSix, "Num 6", Keypad)                      \
	KEY(NumPadSeven, "Num 7", Keypad)                    \
	KEY(NumPadEight, "Num 8", Keypad)                    \
	KEY(NumPadNine, "Num 9", Keypad)                     \
	KEY(Multiply, "Num *", Keypad)                       \
	KEY(Add, "Num +", Keypad)                            \
	KEY(Subtract, "Num -", Keypad)                       \
	KEY(Decimal, "Num .", Keypad)                        \
	KEY(Divide, "Num /", Keypad)                         \
	KEY(NumPadEnter, "Num Enter", Keypad)                \
	KEY(LeftShift, "Left Shift", Modifier)               \
	KEY(RightShift, "Right Shift", Modifier)             \
	KEY(LeftControl, "Left Ctrl", Modifier)              \
	KEY(RightControl, "Right Ctrl", Modifier)            \
	KEY(LeftAlt, "Left Alt", Modifier)                   \
	KEY(RightAlt, "Right Alt", Modifier)                 \
	KEY(LeftCommand, "Left Cmd", Modifier)               \
	KEY(RightCommand, "Right Cmd", Modifier)             \
	KEY(CapsLock, "Caps Lock", Plain)                    \
	KEY(NumLock, "Num Lock", Plain)                      \
	KEY(ScrollLock, "Scroll Lock", Plain)                \
	KEY(BackSpace, "Backspace", Plain)                   \
	KEY(Tab, "Tab", Plain)                               \
	KEY(Enter, "Enter", Plain)                           \
	KEY(Pause, "Pause", Plain)                           \
	KEY(Escape, "Escape", Plain)                         \
	KEY(SpaceBar, "Space Bar", Plain)                    \
	KEY(PageUp, "Page Up", Plain)                        \
	KEY(PageDown, "Page Down", Plain)                    \
	KEY(End, "End", Plain)                               \
	KEY(Home, "Home", Plain)                             \
	KEY(Left, "Left", Plain)                             \
	KEY(Up, "Up", Plain)                                 \
	KEY(Right, "Right", Plain)                           \
	KEY(Down, "Down", Plain)                             \
	KEY(Insert, "Insert", Plain)                         \
	KEY(Delete, "Delete", Plain)                         \
	KEY(PrintScreen, "Print Screen", Plain)              \
	KEY(ContextMenu, "Menu", Plain)                      \
	KEY(Semicolon, ";", Plain)                           \
	KEY(Equals, "=", Plain)                              \
	KEY(Comma, ",", Plain)                               \
	KEY(Hyphen, "-", Plain)                              \
	KEY(Period, ".", Plain)                              \
	KEY(Slash, "/", Plain)                               \
	KEY(Tilde, "`", Plain)                               \
	KEY(LeftBracket, "[", Plain)                         \
	KEY(Backslash, "\\", Plain)                          \
	KEY(RightBracket, "]", Plain)                        \
	KEY(Apostrophe, "'", Plain)                          \
	KEY(LeftMouseButton, "Left Mouse Button", Mouse)     \
	KEY(RightMouseButton, "Right Mouse Button", Mouse)   \
	KEY(MiddleMouseButton, "Middle Mouse Button", Mouse) \
	KEY(ThumbMouseButton, "Thumb Mouse Button", Mouse)   \
	KEY(ThumbMouseButton2, "Thumb Mouse Button 2", Mouse)

const FKey EKeys::Invalid;

#define DEFINE_KEY(Name, DisplayName, Kind) const FKey EKeys::Name(TEXT(#Name));
FOR_EACH_KEY(DEFINE_KEY)
#undef DEFINE_KEY

namespace
{
enum class EKeyKind : uint8
{
	Plain,
	Keypad,
	Modifier,
	Mouse,
};

struct FKeyDetails
{
	const TCHAR* Name;
	const TCHAR* DisplayName;
	EKeyKind Kind;
};

#define DESCRIBE_KEY(Name, DisplayName, Kind) {TEXT(#Name), TEXT(DisplayName), EKeyKind::Kind},
constexpr FKeyDetails AllKeys[] = {FOR_EACH_KEY(DESCRIBE_KEY)};
#undef DESCRIBE_KEY

const FKeyDetails* FindDetails(FName Name)
{
	static const TMap<FName, const FKeyDetails*> ByName = []
	{
		TMap<FName, const FKeyDetails*> Result;
		for (const FKeyDetails& Details : AllKeys)
		{
			Result.Add(FName(Details.Name), &Details);
		}
		return Result;
	}();
	return ByName.FindRef(Name);
}

bool IsOfKind(FName Name, EKeyKind Kind)
{
	const FKeyDetails* Details = FindDetails(Name);
	return Details != nullptr && Details->Kind == Kind;
}
} // namespace

bool FKey::IsValid() const
{
	return FindDetails(Name) != nullptr;
}

bool FKey::IsModifierKey() const
{
	return IsOfKind(Name, EKeyKind::Modifier);
}

bool FKey::IsMouseButton() const
{
	return IsOfKind(Name, EKeyKind::Mouse);
}

bool FKey::IsNumericKeypad() const
{
	return IsOfKind(Name, EKeyKind::Keypad);
}

FString FKey::ToString() const
{
	return Name.ToString();
}

FText FKey::GetDisplayName() const
{
	const FKeyDetails* Details = FindDetails(Name);
	return Details != nullptr ? FText::FromKey(TEXT("InputKeys"), Details->Name, Details->DisplayName)
							  : FText::FromString(Name.ToString());
}

bool EKeys::Find(const FString& NameOrDisplayName, FKey& OutKey)
{
	for (const FKeyDetails& Details : AllKeys)
	{
		if (NameOrDisplayName.Equals(Details.Name, ESearchCase::IgnoreCase) ||
			NameOrDisplayName.Equals(Details.DisplayName, ESearchCase::IgnoreCase))
		{
			OutKey = FKey(Details.Name);
			return true;
		}
	}
	return false;
}
