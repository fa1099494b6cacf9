// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

template <typename Signature>
class TFunction;

template <typename Signature>
class TFunctionRef;

namespace FunctionDetail
{
template <typename T>
inline constexpr bool bIsTFunction = false;
template <typename Signature>
inline constexpr bool bIsTFunction<TFunction<Signature>> = true;

template <typename T>
inline constexpr bool bIsTFunctionRef = false;
template <typename Signature>
inline constexpr bool bIsTFunctionRef<TFunctionRef<Signature>> = true;
}

/// An owned callable of any kind. Copying clones the callable; move construction leaves the source empty; move
/// assignment exchanges the two.
template <typename ReturnType, typename... ArgumentTypes>
class TFunction<ReturnType(ArgumentTypes...)>
{
	using FStorage = std::function<ReturnType(ArgumentTypes...)>;

public:
	TFunction() = default;
	TFunction(std::nullptr_t) {}

	/// Owns a copy of `Callable`; a null function pointer or an empty function makes an empty function.
	template <typename CallableType, typename FDecayed = std::decay_t<CallableType>>
	requires(!std::is_same_v<FDecayed, TFunction> && !FunctionDetail::bIsTFunctionRef<FDecayed> &&
			 std::is_invocable_r_v<ReturnType, FDecayed&, ArgumentTypes...> && std::is_copy_constructible_v<FDecayed>)
		TFunction(CallableType&& Callable)
	{
		if constexpr (FunctionDetail::bIsTFunction<FDecayed>)
		{
			if (!Callable.IsSet())
			{
				return;
			}
		}
		Storage = FStorage(std::forward<CallableType>(Callable));
	}

	TFunction(const TFunction&) = default;

	TFunction(TFunction&& Other) noexcept { Storage.swap(Other.Storage); }

	TFunction& operator=(const TFunction& Other)
	{
		TFunction(Other).Storage.swap(Storage);
		return *this;
	}

	TFunction& operator=(TFunction&& Other) noexcept
	{
		Storage.swap(Other.Storage);
		return *this;
	}

	~TFunction() = default;

	/// Calls the callable; there must be one.
	ReturnType operator()(ArgumentTypes... Arguments) const
	{
		check(IsSet());
		return Storage(std::forward<ArgumentTypes>(Arguments)...);
	}

	bool IsSet() const { return static_cast<bool>(Storage); }
	explicit operator bool() const { return IsSet(); }
	void Reset() { FStorage().swap(Storage); }

	friend bool operator==(const TFunction& Function, std::nullptr_t) { return !Function.IsSet(); }

private:
	FStorage Storage;
};

/// A callable that is only referred to: for parameters. The callable must outlive the reference.
template <typename ReturnType, typename... ArgumentTypes>
class TFunctionRef<ReturnType(ArgumentTypes...)>
{
public:
	/// Refers to `Callable`, which must not be empty.
	template <typename CallableType, typename FDecayed = std::decay_t<CallableType>>
	requires(!std::is_same_v<FDecayed, TFunctionRef> &&
			 std::is_invocable_r_v<ReturnType, std::remove_reference_t<CallableType>&, ArgumentTypes...>)
		TFunctionRef(CallableType&& Callable)
	{
		if constexpr (FunctionDetail::bIsTFunction<FDecayed>)
		{
			check(Callable.IsSet());
		}
		if constexpr (std::is_pointer_v<FDecayed> && std::is_function_v<std::remove_pointer_t<FDecayed>>)
		{
			// The pointer itself is kept, so that a temporary pointer to a function may be handed over.
			Target.Function = reinterpret_cast<FAnyFunction>(static_cast<FDecayed>(Callable));
			check(Target.Function != nullptr);
			Thunk = [](FTarget To, ArgumentTypes... Arguments) -> ReturnType {
				return static_cast<ReturnType>(
					reinterpret_cast<FDecayed>(To.Function)(std::forward<ArgumentTypes>(Arguments)...));
			};
		}
		else
		{
			using FObject = std::remove_reference_t<CallableType>;
			Target.Object = const_cast<void*>(static_cast<const void*>(std::addressof(Callable)));
			Thunk = [](FTarget To, ArgumentTypes... Arguments) -> ReturnType
			{
				return static_cast<ReturnType>(
					std::invoke(*static_cast<FObject*>(To.Object), std::forward<ArgumentTypes>(Arguments)...));
			};
		}
	}

	ReturnType operator()(ArgumentTypes... Arguments) const
	{
		return Thunk(Target, std::forward<ArgumentTypes>(Arguments)...);
	}

private:
	using FAnyFunction = void (*)();

	union FTarget
	{
		void* Object;
		FAnyFunction Function;
	};

	FTarget Target;
	ReturnType (*Thunk)(FTarget, ArgumentTypes...);
};
