// One fuzzed call: an input of bytes chooses an export of the table, a
// feature answer, a size, steps (zero and negative among them), null
// pointers and the family's arguments, and the call is checked against the
// public contract. Shared by the libFuzzer target and its replay test.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace kx {

// Returns an empty string when the call kept the contract: the status is
// one of the contract's values, the source is untouched, a failed call wrote
// nothing at all, a successful one nothing outside its region, and a call
// given a null pointer either failed or wrote nothing. Otherwise a
// description of the case and of what went wrong. `setVnni` sets the answer
// of the feature query.
std::string checkOneCall(const uint8_t* data, std::size_t size, void (*setVnni)(bool));

}  // namespace kx
