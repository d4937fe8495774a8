#pragma once

#include "serverlib/argumentlist.h"
#include "shared/responselistener.h"

#include <QString>

namespace Vorkel {

class Hook;

/// The remote functions by number.
// clang-format off
enum HookFunctionId {
    F_NumObjects = 0,
    F_ObjectByName = 1,
    F_ObjectByIndex = 2,
    F_ObjectName = 3,
    F_QualifiedObjectName = 4,
    F_NumClasses = 5,
    F_AllClasses = 6,
    F_NumNamespaces = 7,
    F_AllNamespaces = 8,
    F_Invoke = 9,
    F_SetProperty = 10,
    F_GetProperty = 11,
    F_Construct = 12,
    F_ObjectToDebugString = 13,
    F_ObjectToInteger = 14,
    F_ObjectToInt64 = 15,
    F_ObjectToString = 16,
    F_ObjectToDouble = 17,
    F_ObjectToBoolean = 18,
    F_ObjectFromInteger = 19,
    F_ObjectFromInt64 = 20,
    F_ObjectFromString = 21,
    F_ObjectFromDouble = 22,
    F_ObjectFromBoolean = 23,
    F_ObjectCompare = 24,
    F_ObjectIsNull = 25,
    F_ObjectFind = 26,
    F_ObjectReady = 27,
    F_ObjectReady2 = 28,
    F_GetObjectItemIfReady = 29,
    F_GetObjectItemIfReady2 = 30,
    F_ObjectCast = 31,
    F_ObjectGlobalBounds = 32,
    F_ObjectReference = 33,
    F_ObjectDereference = 34,
    F_Object = 35,
    F_SpyObjects = 36,
    F_CreatePrimitive = 37,
    F_CreateNull = 38,
    F_GetVoidObject = 39,
    F_RemoteObjectDestroyed = 40,
    F_GetObjectAttribute = 41,
    F_CanConvertTo = 42,
    F_ConvertTo = 43,
    F_ConvertToInterface = 44,
    F_SendEvent = 45,
    F_InitDone = 46,
    F_ExitDone = 47,
    F_AddPropertyDelegate = 48,
    F_SetUniqueProperty = 49,
    F_SetExtensionCode = 50,
    F_SetMouseTracking = 51,
    F_SetRecordMouseDrag = 52,
    F_SetAllowKeyEventCompression = 53,
    F_EnableEventCompression = 54,
    F_TestDataPut = 55,
    F_TestDataGet = 56,
    F_TestDataRemove = 57,
    F_TestDataExists = 58,
    F_TestDataCleanup = 59,
    F_Kill = 60,
    F_Ping = 61,
    F_BlockGUI = 62,
    F_SpyGUI = 63,
    F_SetSpyId = 64,
    F_SetObjectMap = 65,
    F_AddToObjectMap = 66,
    F_SetEventRecordingEnabled = 67,
    F_SetDisableEventCompression = 68,
    F_GetLastError = 69,
    F_EndRecordAndExit = 70,
    F_InstallEventHandler1 = 71,
    F_UninstallEventHandler1 = 72,
    F_InstallEventHandler2 = 73,
    F_UninstallEventHandler2 = 74,
    F_InstallEventHandler3 = 75,
    F_UninstallEventHandler3 = 76,
    F_GetUsedMemory = 77,
    F_GetTotalTime = 78,
    F_GetPID = 79,
    F_GetCWD = 80,
    F_AutInfo = 81,
    F_RequestAnswer = 82,
    F_FetchPropertyValuesAsString = 83,
    F_FetchObjectComponents = 84,
    F_ObjectHasComponents = 85,
    F_CallBackCompleted = 86,
    F_ReadStdout = 87,
    F_ReadStderr = 88,
    F_GetOSName = 89,
    F_SupportsHighlight = 90,
    F_HighlightObject = 91,
    F_ClearHighlight = 92,
    F_Close = 93,
    F_SetRunnerId = 94,
    F_SetRecordFilter = 95,
    F_SetNamingScheme = 96,
    F_ConvertName = 97,
    F_ObjectDescriptorData = 98,
    F_DesktopScreenshot = 99,
    F_GetPixmapAsImage = 100,
    F_GetUnmatchedProperties = 101,
    F_SetError = 102,
    F_SetRecorderId = 103,
    F_StopRecord = 104,
    F_KeyPress = 105,
    F_MousePress = 106,
    F_GetObjectItemByRowColIfReady = 107,
    F_GetObjectItemByRowColIfReady2 = 108,
    F_Inspecting = 109,
    F_Parent = 110,
    F_StartSpying = 111,
    F_StopSpying = 112,
    F_TestSuiteVersion = 113,
    F_GrabObjectScreenshot = 114,
    F_DumpObject = 115,
    // 116 is not assigned
    F_RawMouseEvent = 117,
    F_RawScrollEvent = 118,
    F_RawKeycodeEvent = 119,
    F_RawKeyEvent = 120,
    F_RawTouchEvent = 121,
    F_RawScreenshot = 122,
    F_GetExtraKeys = 123,
    F_RecordScreen = 124,
    F_ConfigureBinaryStream = 125,
    F_StopBinaryStream = 126,
    F_PauseBinaryStream = 127,
    F_ReasumeBinaryStream = 128,
    F_BinaryStreamBytesReceived = 129,
    F_LauncherInit = 130,
    F_NativeCapabilities = 131,
    F_AwaitInput = 132,
    F_ClickIfReady = 133,
};
// clang-format on

enum class FunctionKind {
    Call, ///< wants its result at once
    LaterCall, ///< may be answered later
    Send ///< gets no answer
};

/// How many arguments a function takes.
struct ArgumentCount
{
    static constexpr int NoLimit = -1;

    int least = 0;
    int most = NoLimit;

    [[nodiscard]] constexpr bool accepts(qsizetype count) const
    {
        return count >= least && (most == NoLimit || count <= most);
    }
};

/// What a caller with a wrong number of arguments gets. Where a function has no text of its own,
/// the text names the entry and the function.
struct WrongCount
{
    enum Way { IsLogged, IsReply };

    Way way = IsLogged;
    const char *text = nullptr;
};

/// Who serves a function: gives the answer, or owes it to the listener, to which it goes once, now or later.
struct FunctionHandler
{
    using Answer = QVariant (*)(Hook &hook, const ArgumentList &arguments);
    using LaterAnswer = void (*)(Hook &hook, const ArgumentList &arguments,
                                 ResponseListener<ArgumentList> *listener);

    constexpr FunctionHandler() = default;
    constexpr FunctionHandler(Answer function)
        : answer(function)
    {
    }
    constexpr FunctionHandler(LaterAnswer function)
        : answerLater(function)
    {
    }

    Answer answer = nullptr;
    LaterAnswer answerLater = nullptr;
};

/// One remote function. A function without a handler is known by name, kind and arguments only.
struct RemoteFunction
{
    HookFunctionId id;
    const char *label; ///< the number's name, as messages show it
    const char *name;
    FunctionKind kind;
    ArgumentCount arguments;
    FunctionHandler handler = {};
    WrongCount wrongCount = {};
};

/// The function called `name`, compared exactly; null when there is none.
[[nodiscard]] const RemoteFunction *remoteFunction(const QString &name);

/// The text about a wrong number of arguments for the function `id`.
[[nodiscard]] QString wrongCountText(HookFunctionId id);

} // namespace Vorkel
