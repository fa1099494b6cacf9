// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <memory>
#include <type_traits>
#include <utility>

template <typename T>
class TSharedRef;

template <typename T>
class TWeakPtr;

/// Shared ownership, or nothing: `std::shared_ptr` under the host's names.
template <typename T>
class TSharedPtr
{
public:
	using ElementType = T;

	constexpr TSharedPtr() = default;
	constexpr TSharedPtr(std::nullptr_t) {}

	/// Adopts a standard pointer.
	explicit TSharedPtr(std::shared_ptr<T> InPointer)
		: Pointer(std::move(InPointer))
	{
	}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TSharedPtr(const TSharedPtr<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TSharedPtr(TSharedPtr<U>&& Other)
		: Pointer(std::move(Other.Pointer))
	{
	}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TSharedPtr(const TSharedRef<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }

	/// The object, or null.
	T* Get() const { return Pointer.get(); }

	T* operator->() const
	{
		check(IsValid());
		return Pointer.get();
	}

	T& operator*() const requires(!std::is_void_v<T>)
	{
		check(IsValid());
		return *Pointer;
	}

	void Reset() { Pointer.reset(); }

	/// The same as a reference that is never null; the pointer must be valid.
	TSharedRef<T> ToSharedRef() const { return TSharedRef<T>(Pointer); }

	/// Whether no other shared pointer owns the object.
	bool IsUnique() const { return Pointer.use_count() == 1; }
	int32 GetSharedReferenceCount() const { return static_cast<int32>(Pointer.use_count()); }

	const std::shared_ptr<T>& ToStd() const { return Pointer; }

	template <typename U>
	friend bool operator==(const TSharedPtr& Left, const TSharedPtr<U>& Right)
	{
		return Left.Get() == Right.Get();
	}

	friend bool operator==(const TSharedPtr& Left, std::nullptr_t) { return !Left.IsValid(); }
	friend std::size_t GetTypeHash(const TSharedPtr& Item) { return std::hash<const void*>{}(Item.Get()); }

private:
	template <typename U>
	friend class TSharedPtr;
	template <typename U>
	friend class TWeakPtr;

	std::shared_ptr<T> Pointer;
};

/// Shared ownership of an object that is always there. It has no move: a moved-from reference would be null.
template <typename T>
class TSharedRef
{
public:
	using ElementType = T;

	/// Adopts a standard pointer, which must not be null.
	explicit TSharedRef(std::shared_ptr<T> InPointer)
		: Pointer(std::move(InPointer))
	{
		check(Pointer != nullptr);
	}

	TSharedRef(std::nullptr_t) = delete;
	TSharedRef(const TSharedRef&) = default;
	TSharedRef& operator=(const TSharedRef&) = default;
	~TSharedRef() = default;

	template <typename U>
	requires std::is_convertible_v<U*, T*> TSharedRef(const TSharedRef<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	T& Get() const { return *Pointer; }
	T& operator*() const { return *Pointer; }
	T* operator->() const { return Pointer.get(); }

	TSharedPtr<T> ToSharedPtr() const { return TSharedPtr<T>(Pointer); }
	bool IsUnique() const { return Pointer.use_count() == 1; }
	int32 GetSharedReferenceCount() const { return static_cast<int32>(Pointer.use_count()); }

	template <typename U>
	friend bool operator==(const TSharedRef& Left, const TSharedRef<U>& Right)
	{
		return &Left.Get() == &Right.Get();
	}

	template <typename U>
	friend bool operator==(const TSharedRef& Left, const TSharedPtr<U>& Right)
	{
		return &Left.Get() == Right.Get();
	}

	friend std::size_t GetTypeHash(const TSharedRef& Item) { return std::hash<const void*>{}(&Item.Get()); }

private:
	template <typename U>
	friend class TSharedRef;
	template <typename U>
	friend class TSharedPtr;
	template <typename U>
	friend class TWeakPtr;

	std::shared_ptr<T> Pointer;
};

/// A reference that does not keep its object alive.
template <typename T>
class TWeakPtr
{
public:
	using ElementType = T;

	constexpr TWeakPtr() = default;
	constexpr TWeakPtr(std::nullptr_t) {}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TWeakPtr(const TSharedPtr<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TWeakPtr(const TSharedRef<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	template <typename U>
	requires std::is_convertible_v<U*, T*> TWeakPtr(const TWeakPtr<U>& Other)
		: Pointer(Other.Pointer)
	{
	}

	/// The object, kept alive; null when it is gone.
	TSharedPtr<T> Pin() const { return TSharedPtr<T>(Pointer.lock()); }

	bool IsValid() const { return !Pointer.expired(); }
	void Reset() { Pointer.reset(); }

	friend bool operator==(const TWeakPtr& Left, const TWeakPtr& Right)
	{
		return Left.Pointer.lock() == Right.Pointer.lock();
	}

private:
	template <typename U>
	friend class TWeakPtr;

	std::weak_ptr<T> Pointer;
};

/// Makes an object under shared ownership.
template <typename T, typename... ArgumentTypes>
TSharedRef<T> MakeShared(ArgumentTypes&&... Arguments)
{
	return TSharedRef<T>(std::make_shared<T>(std::forward<ArgumentTypes>(Arguments)...));
}

/// Takes ownership of an object made by `new`.
template <typename T>
TSharedRef<T> MakeShareable(T* Object)
{
	return TSharedRef<T>(std::shared_ptr<T>(Object));
}

/// The same object seen as a class derived from U, unchecked.
template <typename T, typename U>
TSharedPtr<T> StaticCastSharedPtr(const TSharedPtr<U>& Pointer)
{
	return TSharedPtr<T>(std::static_pointer_cast<T>(Pointer.ToStd()));
}

template <typename T, typename U>
TSharedRef<T> StaticCastSharedRef(const TSharedRef<U>& Reference)
{
	return TSharedRef<T>(std::static_pointer_cast<T>(Reference.ToSharedPtr().ToStd()));
}

/// A base for classes whose objects, once under shared ownership, can give out further references to themselves.
template <typename T>
class TSharedFromThis : public std::enable_shared_from_this<T>
{
public:
	/// A reference to this object, which must be under shared ownership already (not so in its constructor).
	TSharedRef<T> AsShared() { return TSharedRef<T>(this->weak_from_this().lock()); }
	TSharedRef<const T> AsShared() const { return TSharedRef<const T>(this->weak_from_this().lock()); }

protected:
	/// A reference to `Self`, in the type of the derived class that asks.
	template <typename DerivedType>
	static TSharedRef<DerivedType> SharedThis(DerivedType* Self)
	{
		return TSharedRef<DerivedType>(std::static_pointer_cast<DerivedType>(Self->weak_from_this().lock()));
	}
};
