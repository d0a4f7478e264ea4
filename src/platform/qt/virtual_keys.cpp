#include "platform/qt/virtual_keys.h"

#include <algorithm>
#include <array>

namespace genutil {
namespace {

struct Mapping {
    int qtKey;
    int code;
};

constexpr std::array mappings{
    Mapping{Qt::Key_Return, key::Enter},
    Mapping{Qt::Key_Enter, key::Enter},
    Mapping{Qt::Key_Escape, key::Escape},
    Mapping{Qt::Key_Space, key::Space},
    Mapping{Qt::Key_PageUp, key::PageUp},
    Mapping{Qt::Key_PageDown, key::PageDown},
    Mapping{Qt::Key_End, key::End},
    Mapping{Qt::Key_Home, key::Home},
    Mapping{Qt::Key_Left, virtualkey::Left},
    Mapping{Qt::Key_Up, key::Up},
    Mapping{Qt::Key_Right, virtualkey::Right},
    Mapping{Qt::Key_Down, key::Down},
    Mapping{Qt::Key_Insert, virtualkey::Insert},
    Mapping{Qt::Key_Delete, key::Delete},
    Mapping{Qt::Key_Backspace, virtualkey::Backspace},
};

constexpr int functionKeys = 24;

} // namespace

int virtualKey(int qtKey) {
    // Letters and digits have the same codes on both sides.
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey < Qt::Key_F1 + functionKeys)
        return key::F1 + (qtKey - Qt::Key_F1);
    const auto found = std::ranges::find(mappings, qtKey, &Mapping::qtKey);
    return found == mappings.end() ? 0 : found->code;
}

KeyEvent toKeyEvent(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers();
    return {.code = virtualKey(event.key()),
        .shift = bool(held & Qt::ShiftModifier),
        .ctrl = bool(held & Qt::ControlModifier),
        .alt = bool(held & Qt::AltModifier),
        .repeated = event.isAutoRepeat()};
}

} // namespace genutil
