// Random bits, the same in every run, and how many samples the number tests take.
#ifndef QUON5_TESTS_RANDOM_NUMBERS_H
#define QUON5_TESTS_RANDOM_NUMBERS_H

#include <cstdint>
#include <cstdlib>

class RandomBits {
 public:
    std::uint64_t operator()() {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }

 private:
    std::uint64_t state_ = 20260305;
};

// A million, or what the environment variable QUON5_SAMPLES says.
inline long num_samples() {
    const char* const samples = std::getenv("QUON5_SAMPLES");
    return samples != nullptr ? std::atol(samples) : 1'000'000;
}

#endif
