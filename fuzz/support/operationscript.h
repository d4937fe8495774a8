#pragma once

#include <cstdint>

/// How the inputs of `fuzz_operations` are read, for the target and for what makes its seeds: for each
/// operation the function, by its place in the table, and its arguments, each an `Argument` with a byte
/// behind it.
namespace OperationScript {

enum Argument : std::uint8_t {
    Handle, ///< the object that was given so many objects ago
    Small, ///< the byte itself, signed
    ClassNumber,
    MinusClassNumber,
    Extreme, ///< by the table below
    Text,
    Real,
    Truth,
    TextList,
    Nothing,
    ArgumentKinds
};

struct Function
{
    const char *name;
    int arguments; ///< so many are read
};

// clang-format off
constexpr Function Functions[] = {
    { "createPrimitive", 2 },       { "createNull", 1 },            { "construct", 3 },             { "invoke", 3 },
    { "getProperty", 2 },           { "setProperty", 3 },           { "objectCastTo", 2 },          { "objectReference", 1 },
    { "objectDereference", 1 },     { "convertTo", 4 },             { "canConvertTo", 4 },          { "objectCompare", 2 },
    { "objectToDebugString", 1 },   { "objectToString", 1 },        { "objectToInteger", 1 },       { "objectToInt64", 1 },
    { "objectToDouble", 1 },        { "objectToBoolean", 1 },       { "objectFromString", 2 },      { "objectFromInteger", 2 },
    { "objectFromInt64", 2 },       { "objectFromDouble", 2 },      { "objectFromBoolean", 2 },     { "objectIsNull", 1 },
    { "getObjectAttribute", 1 },    { "remoteObjectDestroyed", 1 }, { "numObjects", 1 },            { "objects", 1 },
    { "objectByIndex", 2 },         { "objectByName", 2 },          { "objectName", 1 },            { "qualifiedObjectName", 1 },
    { "parent", 1 },                { "convertToInterface", 3 },    { "sendEvent", 3 },             { "objectHasComponents", 1 },
    { "fetchObjectComponents", 1 }, { "fetchPropertyValuesAsString", 1 }, { "getVoidObject", 0 },   { "allClasses", 0 },
    { "allNamespaces", 0 },         { "numClasses", 0 },            { "getLastError", 0 },          { "invoke", 4 },
    { "construct", 2 },             { "invoke", 2 },                { "construct", 8 },             { "objectFind", 1 },
};
constexpr int Extremes[] = { -2147483647 - 1, 2147483647, -1, 0, 1000000, -1000000, 255, 65536 };
constexpr const char *Texts[] = { "int", "long", "bool", "char", "char*", "double", "int64", "[char*", "Shape", "Square", "true",
                                  "-9223372036854775808", "1e300", "", "Vorkel_Array*", "\xc3\xbc\xe4\xb8\xad" };
constexpr double Reals[] = { 0.0, -1.5, 1e300, -1e300, 1e-300, 2147483648.0, 9.3e18, -0.0 };
// clang-format on

} // namespace OperationScript
