// One fuzzed call's arguments: hostile VARIANTs of every type, by value and by reference, and
// the storage they point into. The store owns everything it made and frees it after the call,
// whatever the call wrote into the referenced variables; it also checks that every referenced
// variable came back as a VARIANT a client can clear.
#pragma once
#include "Catalogue.h"
#include "Sandbox.h"

#include <deque>
#include <string>
#include <vector>

namespace orbex::fuzz {

// Where objects come from when an argument is an object.
struct ObjectSource {
    const std::vector<Object>* pool;
    const Sandbox* sandbox;
};

class Arguments {
public:
    Arguments(Random& random, ObjectSource objects) : random_(random), objects_(objects) {}
    ~Arguments();
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    // A value for the parameter: mostly what it declares, often anything at all.
    VARIANT forParameter(const Parameter& parameter);
    // Anything at all.
    VARIANT anything();

    // The call's rgvarg, which the store frees after the call.
    std::vector<VARIANT>& topLevel() { return topLevel_; }

    // Whether every variable passed by reference holds a valid VARIANT after the call.
    bool referencesValid(std::string* problem) const;
    std::string describe(const VARIANT& value, int depth = 0) const;

private:
    VARIANT text(const std::wstring& content);
    VARIANT scalar(VARTYPE type);
    VARIANT array();
    VARIANT object(bool ownKeysOnly);
    VARIANT confinedText(Confined confined);
    VARIANT destination();
    VARIANT byReference(const VARIANT& value);
    VARIANT* box(const VARIANT& value);

    Random& random_;
    ObjectSource objects_;
    std::deque<VARIANT> storage_;       // variables that by-reference arguments point into
    std::deque<bool> storageValid_;     // whether a variable held a valid VARIANT when made
    std::vector<VARIANT> topLevel_;
};

}  // namespace orbex::fuzz
