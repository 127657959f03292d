// A hash table from keys of three 32-bit words to 32-bit values, for the lookups that run once
// per vertex of a large model (point, normal and uv point lists, vertices of a sub-object, cells
// of the simplification grid). Open addressing with linear probing; Clear() is constant time,
// so that a table can be emptied once per sub-object.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace railwright::document::shape {

struct Key3 {
    uint32_t a = 0;
    uint32_t b = 0;
    uint32_t c = 0;
    bool operator==(const Key3&) const = default;
};

// The key of three floats by their bits, with -0 read as 0 so that the two compare equal.
inline Key3 FloatKey(float x, float y, float z) {
    const auto bits = [](float value) {
        uint32_t word;
        value = value == 0 ? 0.0f : value;
        std::memcpy(&word, &value, sizeof word);
        return word;
    };
    return {bits(x), bits(y), bits(z)};
}

class KeyTable {
  public:
    explicit KeyTable(size_t expected = 64) { Rehash(CapacityFor(expected)); }

    // The value kept for `key`; when there is none, `value` is kept and returned, and the second
    // member is true.
    std::pair<uint32_t, bool> FindOrInsert(const Key3& key, uint32_t value) {
        if ((size_ + 1) * 2 > slots_.size()) {
            Rehash(slots_.size() * 2);
        }
        size_t at = Hash(key) & mask_;
        while (slots_[at].generation == generation_) {
            if (slots_[at].key == key) {
                return {slots_[at].value, false};
            }
            at = (at + 1) & mask_;
        }
        slots_[at] = {key, value, generation_};
        ++size_;
        return {value, true};
    }

    // Forgets every key.
    void Clear() {
        ++generation_;
        size_ = 0;
        if (generation_ == 0) {  // after four billion clears the stamps would repeat
            for (Slot& slot : slots_) {
                slot.generation = 0;
            }
            generation_ = 1;
        }
    }

    size_t Size() const { return size_; }

  private:
    struct Slot {
        Key3 key;
        uint32_t value = 0;
        uint32_t generation = 0;  // the slot holds a key when this is the table's generation
    };

    static size_t CapacityFor(size_t expected) {
        size_t capacity = 16;
        while (capacity < expected * 2) {
            capacity *= 2;
        }
        return capacity;
    }

    static size_t Hash(const Key3& key) {
        uint64_t h = (static_cast<uint64_t>(key.a) << 32 | key.b) * 0x9E3779B97F4A7C15ull;
        h ^= (h >> 29) + key.c * 0xBF58476D1CE4E5B9ull;
        h *= 0x94D049BB133111EBull;
        return static_cast<size_t>(h ^ (h >> 31));
    }

    void Rehash(size_t capacity) {
        std::vector<Slot> old = std::move(slots_);
        const uint32_t oldGeneration = generation_;
        slots_.assign(capacity, Slot{});
        mask_ = capacity - 1;
        generation_ = 1;
        size_ = 0;
        for (const Slot& slot : old) {
            if (slot.generation == oldGeneration) {
                size_t at = Hash(slot.key) & mask_;
                while (slots_[at].generation == generation_) {
                    at = (at + 1) & mask_;
                }
                slots_[at] = {slot.key, slot.value, generation_};
                ++size_;
            }
        }
    }

    std::vector<Slot> slots_;
    size_t mask_ = 0;
    size_t size_ = 0;
    uint32_t generation_ = 1;
};

}  // namespace railwright::document::shape
