// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

/// Storage of a large array, filled by its owner: new elements are not cleared first. Large blocks are aligned for, and
/// asked to be on, huge pages, since page faults cost more than the copying does.
void* AllocateMeshStorage(std::size_t Bytes);
void FreeMeshStorage(void* Storage, std::size_t Bytes);

/// Allocator behind `TMeshArray`. Construction without arguments leaves the element as it is.
template <typename T>
struct TMeshAllocator
{
	static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

	using value_type = T;
	using is_always_equal = std::true_type;

	TMeshAllocator() = default;
	template <typename U>
	constexpr TMeshAllocator(const TMeshAllocator<U>&)
	{
	}

	T* allocate(std::size_t Num) { return static_cast<T*>(AllocateMeshStorage(Num * sizeof(T))); }
	void deallocate(T* Storage, std::size_t Num) { FreeMeshStorage(Storage, Num * sizeof(T)); }

	template <typename U, typename... ArgTypes>
	void construct(U* Place, ArgTypes&&... Args)
	{
		if constexpr (sizeof...(ArgTypes) > 0)
		{
			std::construct_at(Place, std::forward<ArgTypes>(Args)...);
		}
	}

	template <typename U>
	bool operator==(const TMeshAllocator<U>&) const
	{
		return true;
	}
};

/// One attribute of all elements of a mesh, contiguous. `resize(N)` leaves new elements indeterminate; copying is one
/// block copy, which the element-wise copy of a standard vector with this allocator is not.
template <typename T>
class TMeshArray : public std::vector<T, TMeshAllocator<T>>
{
	using Super = std::vector<T, TMeshAllocator<T>>;

public:
	TMeshArray() = default;
	TMeshArray(TMeshArray&&) noexcept = default;
	TMeshArray& operator=(TMeshArray&&) noexcept = default;
	TMeshArray(const TMeshArray& Other)
		: Super()
	{
		CopyFrom(Other);
	}
	TMeshArray& operator=(const TMeshArray& Other)
	{
		if (this != &Other)
		{
			CopyFrom(Other);
		}
		return *this;
	}

	uint64 MemoryBytes() const { return this->capacity() * sizeof(T); }

private:
	void CopyFrom(const TMeshArray& Other)
	{
		this->resize(Other.size());
		if (!Other.empty())
		{
			std::memcpy(static_cast<void*>(this->data()), Other.data(), Other.size() * sizeof(T));
		}
	}
};
