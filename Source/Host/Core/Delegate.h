// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Function.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Names one binding, for its removal. Handles are never used twice in one process.
class FDelegateHandle
{
public:
	constexpr FDelegateHandle() = default;

	/// A new valid handle.
	static FDelegateHandle GenerateNewHandle();

	bool IsValid() const { return Id != 0; }
	void Reset() { Id = 0; }

	friend bool operator==(const FDelegateHandle&, const FDelegateHandle&) = default;
	friend std::size_t GetTypeHash(const FDelegateHandle& Handle) { return std::hash<uint64>{}(Handle.Id); }

private:
	uint64 Id = 0;
};

template <typename Signature>
class TDelegate;

/// A binding to at most one callable. Payload values given when binding follow the call's own arguments. Copies hold
/// their own clone of the callable under the same handle. A callable may unbind, rebind or destroy its own delegate
/// while it runs.
template <typename ReturnType, typename... ArgumentTypes>
class TDelegate<ReturnType(ArgumentTypes...)>
{
public:
	TDelegate() = default;
	TDelegate(const TDelegate& Other)
		: Binding(Other.Binding ? std::make_shared<FBinding>(*Other.Binding) : nullptr)
	{
	}
	TDelegate(TDelegate&& Other) noexcept = default;
	TDelegate& operator=(const TDelegate& Other) { return *this = TDelegate(Other); }
	TDelegate& operator=(TDelegate&& Other) noexcept = default;
	~TDelegate() = default;

	/// Binds a function.
	template <typename FunctionType, typename... PayloadTypes>
	static TDelegate CreateStatic(FunctionType* Function, PayloadTypes&&... Payload)
	{
		check(Function != nullptr);
		return CreateLambda(Function, std::forward<PayloadTypes>(Payload)...);
	}

	/// Binds a copy of any callable.
	template <typename CallableType, typename... PayloadTypes>
	static TDelegate CreateLambda(CallableType&& Callable, PayloadTypes&&... Payload)
	{
		static_assert(std::is_invocable_r_v<ReturnType, std::decay_t<CallableType>&, ArgumentTypes...,
						  std::decay_t<PayloadTypes>&...>,
			"The callable does not take the delegate's arguments followed by the payload.");
		TDelegate Result;
		Result.Binding = std::make_shared<FBinding>();
		if constexpr (sizeof...(PayloadTypes) == 0)
		{
			Result.Binding->Callable = std::forward<CallableType>(Callable);
		}
		else
		{
			Result.Binding->Callable =
				[Bound = std::decay_t<CallableType>(std::forward<CallableType>(Callable)),
					Stored = std::tuple<std::decay_t<PayloadTypes>...>(std::forward<PayloadTypes>(Payload)...)](
					ArgumentTypes... Arguments) mutable -> ReturnType
			{
				return std::apply(
					[&](auto&... Values) -> ReturnType {
						return static_cast<ReturnType>(
							std::invoke(Bound, std::forward<ArgumentTypes>(Arguments)..., Values...));
					},
					Stored);
			};
		}
		Result.Binding->Handle = FDelegateHandle::GenerateNewHandle();
		return Result;
	}

	/// Binds a member function of an object that is not owned: unbind before the object goes.
	template <typename ObjectType, typename MemberType, typename... PayloadTypes>
	static TDelegate CreateRaw(ObjectType* Object, MemberType Member, PayloadTypes&&... Payload)
	{
		check(Object != nullptr);
		return CreateLambda(
			[Object, Member](auto&&... Arguments) -> ReturnType {
				return static_cast<ReturnType>(
					std::invoke(Member, Object, std::forward<decltype(Arguments)>(Arguments)...));
			},
			std::forward<PayloadTypes>(Payload)...);
	}

	template <typename FunctionType, typename... PayloadTypes>
	void BindStatic(FunctionType* Function, PayloadTypes&&... Payload)
	{
		*this = CreateStatic(Function, std::forward<PayloadTypes>(Payload)...);
	}

	template <typename CallableType, typename... PayloadTypes>
	void BindLambda(CallableType&& Callable, PayloadTypes&&... Payload)
	{
		*this = CreateLambda(std::forward<CallableType>(Callable), std::forward<PayloadTypes>(Payload)...);
	}

	template <typename ObjectType, typename MemberType, typename... PayloadTypes>
	void BindRaw(ObjectType* Object, MemberType Member, PayloadTypes&&... Payload)
	{
		*this = CreateRaw(Object, Member, std::forward<PayloadTypes>(Payload)...);
	}

	bool IsBound() const { return Binding != nullptr && Binding->Callable.IsSet(); }
	void Unbind() { std::exchange(Binding, nullptr).reset(); }
	FDelegateHandle GetHandle() const { return Binding != nullptr ? Binding->Handle : FDelegateHandle(); }

	/// Calls the bound callable; there must be one.
	ReturnType Execute(ArgumentTypes... Arguments) const
	{
		check(IsBound());
		// Kept alive here: the callable may unbind or destroy this delegate while it runs.
		const std::shared_ptr<FBinding> Running = Binding;
		return Running->Callable(std::forward<ArgumentTypes>(Arguments)...);
	}

	/// Calls the bound callable, if any; returns whether there was one.
	bool ExecuteIfBound(ArgumentTypes... Arguments) const requires std::is_void_v<ReturnType>
	{
		if (!IsBound())
		{
			return false;
		}
		Execute(std::forward<ArgumentTypes>(Arguments)...);
		return true;
	}

private:
	struct FBinding
	{
		TFunction<ReturnType(ArgumentTypes...)> Callable;
		FDelegateHandle Handle;
	};

	std::shared_ptr<FBinding> Binding;
};

namespace DelegateDetail
{
/// Shares an object that counts its owners in a field `Owners`. A standard control block will not do for an event of
/// the host: the module that binds first would make it, and leave a table of functions behind that is gone after
/// unloading.
template <typename T>
class TCountedPtr
{
public:
	TCountedPtr() = default;
	TCountedPtr(std::nullptr_t) {}
	explicit TCountedPtr(T* InObject)
		: Object(InObject)
	{
		Retain();
	}
	TCountedPtr(const TCountedPtr& Other)
		: Object(Other.Object)
	{
		Retain();
	}
	TCountedPtr(TCountedPtr&& Other) noexcept
		: Object(std::exchange(Other.Object, nullptr))
	{
	}
	TCountedPtr& operator=(TCountedPtr Other) noexcept
	{
		swap(Other);
		return *this;
	}
	~TCountedPtr()
	{
		if (Object != nullptr && --Object->Owners == 0)
		{
			delete Object;
		}
	}

	void swap(TCountedPtr& Other) noexcept { std::swap(Object, Other.Object); }
	T& operator*() const { return *Object; }
	T* operator->() const { return Object; }
	bool operator==(std::nullptr_t) const { return Object == nullptr; }

private:
	void Retain()
	{
		if (Object != nullptr)
		{
			++Object->Owners;
		}
	}

	T* Object = nullptr;
};
}

template <typename Signature>
class TMulticastDelegate;

/// An event: any number of bindings, called in the order in which they were added. While it is broadcast, bindings may
/// be added (called from the next broadcast on) and removed (not called any more), and the event itself may be
/// destroyed.
template <typename... ArgumentTypes>
class TMulticastDelegate<void(ArgumentTypes...)>
{
public:
	using FDelegate = TDelegate<void(ArgumentTypes...)>;

	TMulticastDelegate() = default;
	TMulticastDelegate(const TMulticastDelegate& Other) { CopyFrom(Other); }
	TMulticastDelegate(TMulticastDelegate&& Other) noexcept = default;
	TMulticastDelegate& operator=(const TMulticastDelegate& Other)
	{
		if (this != &Other)
		{
			CopyFrom(Other);
		}
		return *this;
	}
	TMulticastDelegate& operator=(TMulticastDelegate&& Other) noexcept = default;
	~TMulticastDelegate() = default;

	/// Adds a bound delegate and returns its handle; an unbound one is ignored and gives an invalid handle.
	FDelegateHandle Add(FDelegate Delegate)
	{
		if (!Delegate.IsBound())
		{
			return {};
		}
		if (List == nullptr)
		{
			List = FListPtr(new FList);
		}
		const FDelegateHandle Handle = Delegate.GetHandle();
		List->Delegates.push_back(std::move(Delegate));
		return Handle;
	}

	template <typename FunctionType, typename... PayloadTypes>
	FDelegateHandle AddStatic(FunctionType* Function, PayloadTypes&&... Payload)
	{
		return Add(FDelegate::CreateStatic(Function, std::forward<PayloadTypes>(Payload)...));
	}

	template <typename CallableType, typename... PayloadTypes>
	FDelegateHandle AddLambda(CallableType&& Callable, PayloadTypes&&... Payload)
	{
		return Add(
			FDelegate::CreateLambda(std::forward<CallableType>(Callable), std::forward<PayloadTypes>(Payload)...));
	}

	template <typename ObjectType, typename MemberType, typename... PayloadTypes>
	FDelegateHandle AddRaw(ObjectType* Object, MemberType Member, PayloadTypes&&... Payload)
	{
		return Add(FDelegate::CreateRaw(Object, Member, std::forward<PayloadTypes>(Payload)...));
	}

	/// Removes one binding; false if the handle names none of them.
	bool Remove(FDelegateHandle Handle)
	{
		if (List == nullptr || !Handle.IsValid())
		{
			return false;
		}
		// A callable's destructor may come back to this event: it runs when the list is in order again.
		const FListPtr Held = List;
		FDelegate Removed;
		for (FDelegate& Delegate : Held->Delegates)
		{
			if (Delegate.GetHandle() == Handle)
			{
				Removed = std::move(Delegate);
				break;
			}
		}
		Held->Compact();
		return Removed.IsBound();
	}

	/// Removes all bindings.
	void Clear()
	{
		if (List == nullptr)
		{
			return;
		}
		const FListPtr Held = List;
		std::vector<FDelegate> Removed;
		Removed.reserve(Held->Delegates.size());
		for (FDelegate& Delegate : Held->Delegates)
		{
			Removed.push_back(std::exchange(Delegate, FDelegate()));
		}
		Held->Compact();
	}

	bool IsBound() const
	{
		return List != nullptr && std::any_of(List->Delegates.begin(), List->Delegates.end(),
									  [](const FDelegate& Delegate) { return Delegate.IsBound(); });
	}

	/// Calls all bindings. Arguments are handed to each of them, so none is moved from.
	void Broadcast(ArgumentTypes... Arguments) const
	{
		const FListPtr Held = List;
		if (Held == nullptr)
		{
			return;
		}
		const FBroadcastScope Scope(*Held);
		// By index, up to the number at the start: the vector may grow meanwhile, and never shrinks during a broadcast.
		const std::size_t Count = Held->Delegates.size();
		for (std::size_t Index = 0; Index < Count; ++Index)
		{
			if (Held->Delegates[Index].IsBound())
			{
				Held->Delegates[Index].Execute(Arguments...);
			}
		}
	}

private:
	struct FList
	{
		std::vector<FDelegate> Delegates;
		int32 BroadcastDepth = 0;
		int32 Owners = 0;

		void Compact()
		{
			if (BroadcastDepth == 0)
			{
				std::erase_if(Delegates, [](const FDelegate& Delegate) { return !Delegate.IsBound(); });
			}
		}
	};

	using FListPtr = DelegateDetail::TCountedPtr<FList>;

	class FBroadcastScope
	{
	public:
		explicit FBroadcastScope(FList& InList)
			: ScopedList(InList)
		{
			++ScopedList.BroadcastDepth;
		}
		~FBroadcastScope()
		{
			--ScopedList.BroadcastDepth;
			ScopedList.Compact();
		}
		FBroadcastScope(const FBroadcastScope&) = delete;
		FBroadcastScope& operator=(const FBroadcastScope&) = delete;

	private:
		FList& ScopedList;
	};

	void CopyFrom(const TMulticastDelegate& Other)
	{
		FListPtr Copy;
		if (Other.IsBound())
		{
			Copy = FListPtr(new FList);
			Copy->Delegates = Other.List->Delegates;
			Copy->Compact();
		}
		List.swap(Copy);
	}

	FListPtr List;
};

using FSimpleDelegate = TDelegate<void()>;
using FSimpleMulticastDelegate = TMulticastDelegate<void()>;
