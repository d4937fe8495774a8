#include "hook/remotefunctions.h"

#include "hook/functionhandler.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace Vorkel {

namespace {

// Known by name and arguments, not served yet.
constexpr FunctionHandler Later;

// clang-format off
consteval ArgumentCount anyCount() { return {}; }
consteval ArgumentCount exactly(int count) { return { count, count }; }
consteval ArgumentCount atLeast(int count) { return { count, ArgumentCount::NoLimit }; }
consteval ArgumentCount between(int least, int most) { return { least, most }; }

consteval WrongCount logs(const char *text) { return { WrongCount::IsLogged, text }; }
consteval WrongCount replies(const char *text) { return { WrongCount::IsReply, text }; }
// clang-format on

using enum FunctionKind;
using FunctionHandling::call;
using FunctionHandling::callLater;

#define VORKEL_FUNCTION(id) id, #id

// clang-format off
constexpr RemoteFunction Functions[] = {
    { VORKEL_FUNCTION(F_NumObjects),                  "numObjects",                     Call,      exactly(1),    call<&Hook::numObjects> },
    { VORKEL_FUNCTION(F_ObjectByName),                "objectByName",                   Call,      exactly(2),    call<&Hook::objectByName> },
    { VORKEL_FUNCTION(F_ObjectByIndex),               "objectByIndex",                  Call,      exactly(2),    call<&Hook::objectByIndex> },
    { VORKEL_FUNCTION(F_ObjectName),                  "objectName",                     Call,      exactly(1),    call<&Hook::objectName> },
    { VORKEL_FUNCTION(F_QualifiedObjectName),         "qualifiedObjectName",            Call,      exactly(1),    call<&Hook::qualifiedObjectName> },
    { VORKEL_FUNCTION(F_NumClasses),                  "numClasses",                     Call,      anyCount(),    call<&Hook::numClasses> },
    { VORKEL_FUNCTION(F_AllClasses),                  "allClasses",                     Call,      exactly(0),    call<&Hook::allClasses> },
    { VORKEL_FUNCTION(F_NumNamespaces),               "numNamespaces",                  Call,      anyCount(),    call<&Hook::numNamespaces> },
    { VORKEL_FUNCTION(F_AllNamespaces),               "allNamespaces",                  Call,      exactly(0),    call<&Hook::allNamespaces> },
    { VORKEL_FUNCTION(F_Invoke),                      "invoke",                         Call,      atLeast(2),    call<&Hook::invoke> },
    { VORKEL_FUNCTION(F_SetProperty),                 "setProperty",                    Call,      exactly(3),    call<&Hook::setProperty> },
    { VORKEL_FUNCTION(F_GetProperty),                 "getProperty",                    Call,      exactly(2),    call<&Hook::getProperty> },
    { VORKEL_FUNCTION(F_Construct),                   "construct",                      Call,      atLeast(2),    call<&Hook::construct> },
    { VORKEL_FUNCTION(F_ObjectToDebugString),         "objectToDebugString",            Call,      exactly(1),    call<&Hook::objectToDebugString> },
    { VORKEL_FUNCTION(F_ObjectToInteger),             "objectToInteger",                Call,      exactly(1),    call<&Hook::objectToInteger> },
    { VORKEL_FUNCTION(F_ObjectToInt64),               "objectToInt64",                  Call,      exactly(1),    call<&Hook::objectToInt64> },
    { VORKEL_FUNCTION(F_ObjectToString),              "objectToString",                 Call,      exactly(1),    call<&Hook::objectToString> },
    { VORKEL_FUNCTION(F_ObjectToDouble),              "objectToDouble",                 Call,      exactly(1),    call<&Hook::objectToDouble> },
    { VORKEL_FUNCTION(F_ObjectToBoolean),             "objectToBoolean",                Call,      exactly(1),    call<&Hook::objectToBoolean> },
    { VORKEL_FUNCTION(F_ObjectFromInteger),           "objectFromInteger",              Call,      exactly(2),    call<&Hook::objectFromInteger> },
    { VORKEL_FUNCTION(F_ObjectFromInt64),             "objectFromInt64",                Call,      exactly(2),    call<&Hook::objectFromInt64> },
    { VORKEL_FUNCTION(F_ObjectFromString),            "objectFromString",               Call,      exactly(2),    call<&Hook::objectFromString> },
    { VORKEL_FUNCTION(F_ObjectFromDouble),            "objectFromDouble",               Call,      exactly(2),    call<&Hook::objectFromDouble> },
    { VORKEL_FUNCTION(F_ObjectFromBoolean),           "objectFromBoolean",              Call,      exactly(2),    call<&Hook::objectFromBoolean> },
    { VORKEL_FUNCTION(F_ObjectCompare),               "objectCompare",                  Call,      exactly(2),    call<&Hook::objectCompare> },
    { VORKEL_FUNCTION(F_ObjectIsNull),                "objectIsNull",                   Call,      exactly(1),    call<&Hook::objectIsNull> },
    { VORKEL_FUNCTION(F_ObjectFind),                  "objectFind",                     Call,      exactly(1),    call<&Hook::objectFind> },
    { VORKEL_FUNCTION(F_ObjectReady),                 "objectReady",                    Call,      exactly(1),    call<qOverload<const QString &>(&Hook::getObjectIfReady)> },
    { VORKEL_FUNCTION(F_ObjectReady2),                "objectReady2",                   Call,      exactly(1),    call<qOverload<const SharedPtr<Object> &>(&Hook::getObjectIfReady)>, logs("Hook::handleCall: F_ObjectReady: wrong number of arguments") },
    { VORKEL_FUNCTION(F_GetObjectItemIfReady),        "getObjectItemIfReady",           Call,      exactly(2),    call<qOverload<const QString &, const QString &>(&Hook::getObjectItemIfReady)> },
    { VORKEL_FUNCTION(F_GetObjectItemIfReady2),       "getObjectItemIfReady2",          Call,      exactly(2),    call<qOverload<const SharedPtr<Object> &, const QString &>(&Hook::getObjectItemIfReady)> },
    { VORKEL_FUNCTION(F_ObjectCast),                  "objectCastTo",                   Call,      exactly(2),    call<&Hook::objectCastTo> },
    { VORKEL_FUNCTION(F_ObjectGlobalBounds),          "objectGlobalBounds",             Call,      exactly(1),    call<&Hook::objectGlobalBounds> },
    { VORKEL_FUNCTION(F_ObjectReference),             "objectReference",                Call,      exactly(1),    call<&Hook::objectReference> },
    { VORKEL_FUNCTION(F_ObjectDereference),           "objectDereference",              Call,      exactly(1),    call<&Hook::objectDereference> },
    { VORKEL_FUNCTION(F_Object),                      "objects",                        Call,      exactly(1),    call<&Hook::objects> },
    { VORKEL_FUNCTION(F_SpyObjects),                  "spyObjects",                     Call,      exactly(1),    call<&Hook::spiedObjects>, logs("Hook::handleCall: spyObjects: wrong number of arguments") },
    { VORKEL_FUNCTION(F_CreatePrimitive),             "createPrimitive",                Call,      exactly(2),    call<&Hook::createPrimitive> },
    { VORKEL_FUNCTION(F_CreateNull),                  "createNull",                     Call,      exactly(1),    call<&Hook::createNull> },
    { VORKEL_FUNCTION(F_GetVoidObject),               "getVoidObject",                  Call,      exactly(0),    call<&Hook::getVoidObject> },
    { VORKEL_FUNCTION(F_RemoteObjectDestroyed),       "remoteObjectDestroyed",          Send,      exactly(1),    call<&Hook::remoteObjectDestroyed> },
    { VORKEL_FUNCTION(F_GetObjectAttribute),          "getObjectAttribute",             Call,      exactly(1),    call<&Hook::getObjectAttribute> },
    { VORKEL_FUNCTION(F_CanConvertTo),                "canConvertTo",                   Call,      exactly(4),    call<&Hook::canConvertTo> },
    { VORKEL_FUNCTION(F_ConvertTo),                   "convertTo",                      Call,      exactly(4),    call<&Hook::convertTo> },
    { VORKEL_FUNCTION(F_ConvertToInterface),          "convertToInterface",             Call,      exactly(3),    call<&Hook::convertToInterface> },
    { VORKEL_FUNCTION(F_SendEvent),                   "sendEvent",                      Send,      atLeast(2),    call<&Hook::sendEvent> },
    { VORKEL_FUNCTION(F_InitDone),                    "initDone",                       Send,      exactly(0),    call<&Hook::initDone> },
    { VORKEL_FUNCTION(F_ExitDone),                    "exitDone",                       Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_AddPropertyDelegate),         "addPropertyDelegate",            Call,      exactly(2),    call<&InspectorInterface::addPropertyDelegate> },
    { VORKEL_FUNCTION(F_SetUniqueProperty),           "setUniqueProperty",              Call,      exactly(2),    call<&InspectorInterface::setUniqueProperty> },
    { VORKEL_FUNCTION(F_SetExtensionCode),            "setExtensionCode",               Call,      exactly(2),    call<&InspectorInterface::setExtensionCode> },
    { VORKEL_FUNCTION(F_SetMouseTracking),            "setMouseTracking",               Call,      exactly(2),    call<&InspectorInterface::setMouseTracking> },
    { VORKEL_FUNCTION(F_SetRecordMouseDrag),          "setRecordMouseDrag",             Call,      exactly(2),    call<&InspectorInterface::setRecordMouseDrag> },
    { VORKEL_FUNCTION(F_SetAllowKeyEventCompression), "setAllowKeyEventCompression",    Call,      exactly(2),    call<&InspectorInterface::setAllowKeyEventCompression> },
    { VORKEL_FUNCTION(F_EnableEventCompression),      "enableEventCompression",         Call,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_TestDataPut),                 "testDataPut",                    Call,      exactly(3),    Later },
    { VORKEL_FUNCTION(F_TestDataGet),                 "testDataGet",                    Call,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_TestDataRemove),              "testDataRemove",                 Call,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_TestDataExists),              "testDataExists",                 Call,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_TestDataCleanup),             "testDataCleanup",                Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_Kill),                        "kill",                           Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_Ping),                        "ping",                           Send,      exactly(0),    call<&Hook::ping> },
    { VORKEL_FUNCTION(F_BlockGUI),                    "blockGUI",                       Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_SpyGUI),                      "spyGUI",                         Send,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_SetSpyId),                    "setSpyId",                       Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_SetObjectMap),                "setObjectMap",                   Send,      atLeast(1),    call<&Hook::setObjectMap> },
    { VORKEL_FUNCTION(F_AddToObjectMap),              "addToObjectMap",                 Call,      exactly(2),    call<&Hook::addToObjectMap> },
    { VORKEL_FUNCTION(F_SetEventRecordingEnabled),    "setEventRecordingEnabled",       Send,      atLeast(1),    Later },
    { VORKEL_FUNCTION(F_SetDisableEventCompression),  "setDisableEventCompression",     Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_GetLastError),                "getLastError",                   Call,      exactly(0),    call<&InspectorInterface::lastError> },
    { VORKEL_FUNCTION(F_EndRecordAndExit),            "endRecordAndExit",               Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_InstallEventHandler1),        "installEventHandler1",           Call,      exactly(3),    Later },
    { VORKEL_FUNCTION(F_UninstallEventHandler1),      "uninstallEventHandler1",         Call,      exactly(3),    Later },
    { VORKEL_FUNCTION(F_InstallEventHandler2),        "installEventHandler2",           Call,      exactly(3),    Later },
    { VORKEL_FUNCTION(F_UninstallEventHandler2),      "uninstallEventHandler2",         Call,      exactly(3),    Later },
    { VORKEL_FUNCTION(F_InstallEventHandler3),        "installEventHandler3",           Call,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_UninstallEventHandler3),      "uninstallEventHandler3",         Call,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_GetUsedMemory),               "getUsedMemory",                  Call,      anyCount(),    call<&AUTProcess::usedMemory> },
    { VORKEL_FUNCTION(F_GetTotalTime),                "getTotalTime",                   Call,      anyCount(),    call<&AUTProcess::totalTime> },
    { VORKEL_FUNCTION(F_GetPID),                      "getPID",                         Call,      anyCount(),    call<&AUTProcess::processId> },
    { VORKEL_FUNCTION(F_GetCWD),                      "getCWD",                         Call,      anyCount(),    call<&AUTProcess::workingDirectory> },
    { VORKEL_FUNCTION(F_AutInfo),                     "autInfo",                        Call,      atLeast(1),    call<&Hook::autInfo> },
    { VORKEL_FUNCTION(F_RequestAnswer),               "requestAnswer",                  Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_FetchPropertyValuesAsString), "fetchPropertyValuesAsString",    Call,      atLeast(1),    call<&Hook::fetchPropertyValuesAsString> },
    { VORKEL_FUNCTION(F_FetchObjectComponents),       "fetchObjectComponents",          Call,      atLeast(1),    call<&Hook::fetchObjectComponents> },
    { VORKEL_FUNCTION(F_ObjectHasComponents),         "objectHasComponents",            Call,      atLeast(1),    call<&Hook::objectHasComponents> },
    { VORKEL_FUNCTION(F_CallBackCompleted),           "callBackCompleted",              Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_ReadStdout),                  "readStdout",                     Call,      anyCount(),    call<&AUTProcess::readStdout> },
    { VORKEL_FUNCTION(F_ReadStderr),                  "readStderr",                     Call,      anyCount(),    call<&AUTProcess::readStderr> },
    { VORKEL_FUNCTION(F_GetOSName),                   "getOSName",                      Call,      anyCount(),    call<&AUTProcess::osName> },
    { VORKEL_FUNCTION(F_SupportsHighlight),           "supportsHighlight",              Call,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_HighlightObject),             "highlightObject",                Call,      between(1, 2), Later },
    { VORKEL_FUNCTION(F_ClearHighlight),              "clearHighlight",                 Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_Close),                       "close",                          Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_SetRunnerId),                 "setRunnerId",                    Send,      exactly(1),    call<&Hook::setRunnerId> },
    { VORKEL_FUNCTION(F_SetRecordFilter),             "setRecorderFilter",              Call,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_SetNamingScheme),             "namingScheme",                   Send,      exactly(1),    call<&Hook::setNamingScheme> },
    { VORKEL_FUNCTION(F_ConvertName),                 "convertName",                    Call,      atLeast(2),    call<&Hook::convertName> },
    { VORKEL_FUNCTION(F_ObjectDescriptorData),        "objectDescriptorData",           Send,      atLeast(1),    call<&Hook::addObjectDescriptorData> },
    { VORKEL_FUNCTION(F_DesktopScreenshot),           "desktopScreenshot",              Call,      anyCount(),    call<&Hook::desktopScreenshot> },
    { VORKEL_FUNCTION(F_GetPixmapAsImage),            "getPixmapAsImage",               Call,      exactly(1),    call<&Hook::getPixmapAsImage> },
    { VORKEL_FUNCTION(F_GetUnmatchedProperties),      "getUnmatchedProperties",         Call,      exactly(0),    call<&Hook::getUnmatchedProperties> },
    { VORKEL_FUNCTION(F_SetError),                    "setError",                       Call,      exactly(1),    call<&InspectorInterface::setError> },
    { VORKEL_FUNCTION(F_SetRecorderId),               "setRecorderId",                  Send,      atLeast(1),    Later },
    { VORKEL_FUNCTION(F_StopRecord),                  "stopRecord",                     Send,      exactly(0),    Later },
    { VORKEL_FUNCTION(F_KeyPress),                    "keyPress",                       Call,      exactly(2),    call<&Hook::keyPress>, logs("Hook::handleCall: F_KeyPress: number of arguments is wrong") },
    { VORKEL_FUNCTION(F_MousePress),                  "mousePress",                     Call,      exactly(8),    call<&Hook::mousePress>, logs("Hook::handleCall: F_MousePress: number of arguments is wrong") },
    { VORKEL_FUNCTION(F_GetObjectItemByRowColIfReady),"getObjectItemByRowColIfReady",   Call,      exactly(3),    call<qOverload<const QString &, int, int>(&Hook::getObjectItemIfReady)> },
    { VORKEL_FUNCTION(F_GetObjectItemByRowColIfReady2),"getObjectItemByRowColIfReady2",  Call,      exactly(3),    call<qOverload<const SharedPtr<Object> &, int, int>(&Hook::getObjectItemIfReady)> },
    { VORKEL_FUNCTION(F_Inspecting),                  "inspecting",                     Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_Parent),                      "parent",                         Call,      exactly(1),    call<&Hook::parent> },
    { VORKEL_FUNCTION(F_StartSpying),                 "startSpying",                    Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_StopSpying),                  "stopSpying",                     Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_TestSuiteVersion),            "testSuiteVersion",               Send,      atLeast(1),    call<&Hook::setTestSuiteVersion> },
    { VORKEL_FUNCTION(F_GrabObjectScreenshot),        "grabObjectScreenshot",           Call,      exactly(3),    call<&Hook::grabObjectScreenshot> },
    { VORKEL_FUNCTION(F_DumpObject),                  "dumpObject",                     Call,      anyCount(),    Later },
    { VORKEL_FUNCTION(F_RawMouseEvent),               "rawMouseEvent",                  Call,      exactly(5),    call<&Hook::rawMouseEvent>, replies("Hook::handleCall: F_RawMouseEvent: wrong number of arguments") },
    { VORKEL_FUNCTION(F_RawScrollEvent),              "rawScrollEvent",                 Call,      exactly(1),    call<&Hook::rawScrollEvent>, replies("Hook::handleCall: F_RawMouseEvent: wrong number of arguments") },
    { VORKEL_FUNCTION(F_RawKeycodeEvent),             "rawKeycodeEvent",                Call,      exactly(4),    call<&Hook::rawKeycodeEvent>, replies("Hook::handleCall: F_RawKeyEvent: wrong number of arguments") },
    { VORKEL_FUNCTION(F_RawKeyEvent),                 "rawKeyEvent",                    Call,      exactly(2),    call<&Hook::rawKeyEvent>, replies("Hook::handleCall: F_RawKeyEvent: wrong number of arguments") },
    { VORKEL_FUNCTION(F_RawTouchEvent),               "rawTouchEvent",                  Call,      exactly(6),    call<&Hook::rawTouchEvent>, replies("Hook::handleCall: F_RawTouchEvent: wrong number of arguments") },
    { VORKEL_FUNCTION(F_RawScreenshot),               "rawScreenshot",                  LaterCall, exactly(1),    callLater<&Hook::rawScreenshot> },
    { VORKEL_FUNCTION(F_GetExtraKeys),                "getExtraKeys",                   LaterCall, anyCount(),    callLater<&Hook::getExtraKeys> },
    { VORKEL_FUNCTION(F_RecordScreen),                "recordScreen",                   LaterCall, exactly(3),    Later },
    { VORKEL_FUNCTION(F_ConfigureBinaryStream),       "configureBinaryStream",          Call,      exactly(2),    call<&Hook::configureBinaryStream>, replies("Hook::handleSend: F_ConfigureBinaryStream: wrong number of arguments") },
    { VORKEL_FUNCTION(F_StopBinaryStream),            "stopBinaryStream",               Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_PauseBinaryStream),           "pauseBinaryStream",              Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_ReasumeBinaryStream),         "reasumeBinaryStream",            Send,      exactly(1),    Later },
    { VORKEL_FUNCTION(F_BinaryStreamBytesReceived),   "binaryStreamBytesReceived",      Send,      exactly(2),    Later },
    { VORKEL_FUNCTION(F_LauncherInit),                "launcherInit",                   Call,      anyCount(),    Later },
    { VORKEL_FUNCTION(F_NativeCapabilities),          "nativeCapabilities",             Call,      anyCount(),    call<&Hook::nativeCapabilities> },
    { VORKEL_FUNCTION(F_AwaitInput),                  "awaitInput",                     LaterCall, exactly(2),    callLater<&Hook::awaitInput> },
    { VORKEL_FUNCTION(F_ClickIfReady),                "clickIfReady",                   Call,      exactly(7),    call<&Hook::clickIfReady> },
};
// clang-format on

#undef VORKEL_FUNCTION

constexpr int UnassignedId = 116;

consteval bool idsGoUpWithOneGap()
{
    int expected = 0;
    for (const RemoteFunction &function : Functions) {
        expected += expected == UnassignedId;
        if (function.id != expected++)
            return false;
    }
    return true;
}

consteval bool namesAreUnique()
{
    for (const RemoteFunction &function : Functions) {
        const auto same = [&](const RemoteFunction &other) {
            return std::string_view(other.name) == function.name;
        };
        if (std::ranges::count_if(Functions, same) != 1)
            return false;
    }
    return true;
}

static_assert(idsGoUpWithOneGap());
static_assert(namesAreUnique());

const RemoteFunction &functionById(HookFunctionId id)
{
    return *std::ranges::find(Functions, id, &RemoteFunction::id);
}

std::map<QString, const RemoteFunction *> functionsByName()
{
    std::map<QString, const RemoteFunction *> functions;
    for (const RemoteFunction &function : Functions)
        functions.emplace(QLatin1String(function.name), &function);
    return functions;
}

} // namespace

const RemoteFunction *remoteFunction(const QString &name)
{
    // Kept for good: functions may be called while static objects are being destroyed.
    static const auto *const functions = new std::map(functionsByName());
    const auto entry = functions->find(name);
    return entry == functions->end() ? nullptr : entry->second;
}

QString wrongCountText(HookFunctionId id)
{
    const RemoteFunction &function = functionById(id);
    if (function.wrongCount.text)
        return QLatin1String(function.wrongCount.text);
    const bool isSend = function.kind == FunctionKind::Send;
    return QStringLiteral("Hook::%1: %2: wrong number of arguments")
            .arg(isSend ? QLatin1String("handleSend") : QLatin1String("handleCall"),
                 QLatin1String(function.label));
}

} // namespace Vorkel
