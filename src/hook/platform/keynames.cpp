#include "hook/platform/keynames.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/nativeinterface.h"

namespace Vorkel {

namespace {

struct Row
{
    const char *name;
    const char *xkbName;
};

// clang-format off
constexpr Row Rows[] = {
    { "Alt",            "Alt_L"       },
    { "MenuLeft",       "Alt_L"       },
    { "Ctrl",           "Control_L"   },
    { "Shift",          "Shift_L"     },
    { "Space",          "space"       },
    { "Backspace",      "BackSpace"   },
    { "PageDown",       "Next"        },
    { "PageUp",         "Prior"       },
    { "NumPad0",        "KP_0"        },
    { "NumPad1",        "KP_1"        },
    { "NumPad2",        "KP_2"        },
    { "NumPad3",        "KP_3"        },
    { "NumPad4",        "KP_4"        },
    { "NumPad5",        "KP_5"        },
    { "NumPad6",        "KP_6"        },
    { "NumPad7",        "KP_7"        },
    { "NumPad8",        "KP_8"        },
    { "NumPad9",        "KP_9"        },
    { "NumPadMultiply", "KP_Multiply" },
    { "NumPadAdd",      "KP_Add"      },
    { "NumPadSubtract", "KP_Subtract" },
    { "NumPadDivide",   "KP_Divide"   },
    { "NumPadDecimal",  "KP_Decimal"  },
    { "MenuRight",      "Menu"        },
    { "NumLock",        "Num_Lock"    },
    { "ScrollLock",     "Scroll_Lock" },
    { "CapsLock",       "Caps_Lock"   },
    { "Win",            "Super_L"     },
    { "WinLeft",        "Super_L"     },
    { "WinRight",       "Super_R"     },
};
// clang-format on

} // namespace

QString ourKeyToXKBString(const QString &name)
{
    for (const Row &row : Rows) {
        if (name == QLatin1String(row.name))
            return QString::fromLatin1(row.xkbName);
    }
    return name;
}

bool isValidKey(const QString &name)
{
    NativeInterface *const native = currentNativeInterface();
    return native && native->isValidSpecialKey(name);
}

} // namespace Vorkel
