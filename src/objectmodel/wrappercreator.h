#pragma once

#include "fkit/export.h"
#include "fkit/ftypes.h"

namespace Vorkel {

class Argument;
class Class;
class Constructor;
class Method;
class Signature;

// Rows that describe classes: read-only data of a wrapper, usually generated. Their layout is a
// format. Texts are byte offsets into a pool.

struct ConstructorDescriptor
{
    FInt32 firstArgument; ///< where its parameters begin among the argument indexes
    FInt32 argumentCount;
};

struct MethodDescriptor
{
    FInt32 returnArgument; ///< the row that describes the result
    FInt32 name;
    FInt32 argumentCount;
    FInt32 firstArgument;
    bool isStatic;
};

struct ArgumentDescriptor
{
    enum TypeKind : FInt32 { ByClassId = 0, ByName = 1, ByRealName = 2 };
    enum : FInt32 { NoName = -1, EnumByType = -1, NoEnum = -2 };

    FInt32 name; ///< negative for none
    FInt32 typeKind;
    FInt32 typeRef; ///< class id, or the name of the class
    FInt32 flags; ///< of `ObjectAttribute`
    FInt32 arraySize;
    FInt32 enumerator; ///< qualified enum name, or one of the numbers above
};

static_assert(sizeof(ConstructorDescriptor) == 8);
static_assert(sizeof(MethodDescriptor) == 20);
static_assert(sizeof(ArgumentDescriptor) == 24);

/// Makes the members of a class out of rows, one by one as they are asked for. All pointers stay
/// the caller's and outlive this.
class VORKEL_EXPORT WrapperCreator
{
public:
    /// `argumentIndexes` are the signature slots: each a row of `arguments`.
    WrapperCreator(const Class *describedClass, const char *strings,
                   const ConstructorDescriptor *constructors, const MethodDescriptor *methods,
                   const int *argumentIndexes, const ArgumentDescriptor *arguments);

    /// The caller owns the results. `index` is hierarchy-wide for methods.
    [[nodiscard]] Constructor *createConstructor(int index) const;
    [[nodiscard]] Method *createMethod(int index) const;
    [[nodiscard]] Signature signatureFromData(int first, int count) const;
    [[nodiscard]] Argument argumentFromDescriptor(const ArgumentDescriptor &row) const;

private:
    const Class *m_class;
    const char *m_strings;
    const ConstructorDescriptor *m_constructors;
    const MethodDescriptor *m_methods;
    const int *m_argumentIndexes;
    const ArgumentDescriptor *m_arguments;
};

} // namespace Vorkel
