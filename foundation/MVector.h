#pragma once
// A counted array. Count is the capacity, never a fill level: every user keeps
// its own fill counter beside the vector and grows it in steps of its own.

#include <cstdint>
#include <new>
#include <utility>

void DebugOutput(const char16_t* text);

template <typename T> struct MVector {
    int32_t Count = 0; // elements allocated
    T* Data = nullptr; // owned; null when Count is 0

    MVector() = default;
    MVector(const MVector& other) { *this = other; }
    MVector& operator=(const MVector& other) {
        if (this == &other) return *this;
        SetCount(0);
        if (other.Count > 0 && SetCount(other.Count))
            for (int32_t i = 0; i < Count; i++)
                Data[i] = other.Data[i];
        return *this;
    }
    ~MVector() { delete[] Data; }

    T& operator[](int32_t index) { return Data[index]; }
    const T& operator[](int32_t index) const { return Data[index]; }

    // Resizes to exactly count elements, keeping the first min(old, new).
    // New elements are default-constructed. On an allocation failure the old
    // contents are lost, Count is 0 and the result is false.
    bool SetCount(int32_t count) {
        if (count == Count) return true;
        if (count <= 0) {
            delete[] Data;
            Data = nullptr;
            Count = 0;
            return true;
        }
        T* block = new (std::nothrow) T[count]();
        if (!block) {
            DebugOutput(u"MVector: out of memory exception\n");
            delete[] Data;
            Data = nullptr;
            Count = 0;
            return false;
        }
        int32_t keep = Count < count ? Count : count;
        // Moving gives the same elements as copying, without copying what they own.
        for (int32_t i = 0; i < keep; i++)
            block[i] = std::move(Data[i]);
        delete[] Data;
        Data = block;
        Count = count;
        return true;
    }

    // Makes room for at least needed elements, growing by at least step.
    bool Grow(int32_t needed, int32_t step) {
        if (needed <= Count) return true;
        int32_t more = needed - Count;
        return SetCount(Count + (more > step ? more : step));
    }
};
