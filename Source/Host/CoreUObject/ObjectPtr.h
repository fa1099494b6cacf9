// SPDX-License-Identifier: MIT
#pragma once

#include "CoreUObject/Object.h"

#include <concepts>
#include <cstddef>
#include <functional>

/// A tracked object pointer: the collector knows the ones that an object serializes, and keeps what they point at. One
/// that stands anywhere else keeps nothing alive, and resolves to null once its object has been collected: it never
/// dangles.
template <class T>
class TObjectPtr
{
public:
	TObjectPtr() = default;
	TObjectPtr(std::nullptr_t) {}
	TObjectPtr(T* Object)
		: Handle(MakeObjectHandle(Object))
	{
	}
	template <class TOther>
	requires std::convertible_to<TOther*, T*> TObjectPtr(const TObjectPtr<TOther>& Other)
		: Handle(Other.GetHandle())
	{
	}

	/// The object while it exists in memory (destroyed ones included: ask `IsValid`), else null. Pointers are compared
	/// as what they resolve to.
	T* Get() const { return static_cast<T*>(ResolveObject(Handle)); }
	operator T*() const { return Get(); }
	T* operator->() const
	{
		T* const Object = Get();
		check(Object);
		return Object;
	}
	T& operator*() const { return *operator->(); }
	explicit operator bool() const { return Get() != nullptr; }

	FObjectHandle GetHandle() const { return Handle; }
	void SetHandle(FObjectHandle InHandle) { Handle = InHandle; }

private:
	FObjectHandle Handle;
};

/// A reference that keeps nothing alive and is stale as soon as its object is destroyed or collected.
class FWeakObjectPtr
{
public:
	FWeakObjectPtr() = default;
	FWeakObjectPtr(const UObject* Object)
		: Handle(MakeObjectHandle(Object))
	{
	}

	/// The object, or null when the reference is stale.
	UObject* Get() const { return ResolveLiveObject(Handle); }
	bool IsValid() const { return Get() != nullptr; }
	bool IsStale() const { return !IsValid(); }
	void Reset() { Handle = {}; }
	FObjectHandle GetHandle() const { return Handle; }

	/// The same slot with the same serial number, or both stale.
	bool operator==(const FWeakObjectPtr& Other) const
	{
		return Handle == Other.Handle || (IsStale() && Other.IsStale());
	}

private:
	FObjectHandle Handle;
};

/// A weak reference to a `T`.
template <class T>
class TWeakObjectPtr
{
public:
	TWeakObjectPtr() = default;
	TWeakObjectPtr(const T* Object)
		: Weak(Object)
	{
	}

	T* Get() const { return static_cast<T*>(Weak.Get()); }
	T* operator->() const
	{
		T* const Object = Get();
		check(Object);
		return Object;
	}
	explicit operator bool() const { return IsValid(); }
	bool IsValid() const { return Weak.IsValid(); }
	bool IsStale() const { return Weak.IsStale(); }
	void Reset() { Weak.Reset(); }
	FObjectHandle GetHandle() const { return Weak.GetHandle(); }

	bool operator==(const TWeakObjectPtr& Other) const { return Weak == Other.Weak; }

private:
	FWeakObjectPtr Weak;
};

template <>
struct std::hash<FObjectHandle>
{
	std::size_t operator()(const FObjectHandle& Handle) const noexcept
	{
		return std::hash<uint64>()((uint64(uint32(Handle.Slot)) << 32) | Handle.Serial);
	}
};
template <class T>
struct std::hash<TObjectPtr<T>>
{
	std::size_t operator()(const TObjectPtr<T>& Pointer) const noexcept
	{
		return std::hash<FObjectHandle>()(Pointer.GetHandle());
	}
};
