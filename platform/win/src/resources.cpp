#include "resources.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace win {

namespace {

struct Tables {
    std::mutex mutex;
    std::map<UINT, std::vector<const DialogTemplate*>> dialogs;
    std::map<UINT, std::vector<const std::wstring*>> strings;
};

Tables& tables() {
    static Tables* t = new Tables; // modules register from their static objects
    return *t;
}

template <typename T>
void removeFrom(std::map<UINT, std::vector<const T*>>& table, UINT id, const T* item) {
    auto found = table.find(id);
    if (found == table.end()) return;
    std::erase(found->second, item);
    if (found->second.empty()) table.erase(found);
}

} // namespace

const char* kindName(ControlKind kind) {
    switch (kind) {
    case ControlKind::Static:
        return "static";
    case ControlKind::GroupBox:
        return "group box";
    case ControlKind::Edit:
        return "edit";
    case ControlKind::PushButton:
        return "button";
    case ControlKind::CheckBox:
        return "check box";
    case ControlKind::RadioButton:
        return "radio";
    case ControlKind::ComboBox:
        return "combo box";
    case ControlKind::ListBox:
        return "list box";
    case ControlKind::Progress:
        return "progress bar";
    }
    return "?";
}

std::wstring labelOf(const DialogTemplate& dialog, std::size_t index) {
    const ControlTemplate& control = dialog.controls.at(index);
    if (control.label) return control.label;
    switch (control.kind) {
    case ControlKind::Edit:
    case ControlKind::ComboBox:
    case ControlKind::ListBox:
    case ControlKind::Progress:
        for (std::size_t i = index; i-- > 0;) {
            const ControlTemplate& before = dialog.controls[i];
            if (before.kind == ControlKind::Static || before.kind == ControlKind::GroupBox)
                return before.text ? before.text : L"";
        }
        return L"";
    default:
        return control.text ? control.text : L"";
    }
}

DialogResource::DialogResource(DialogTemplate dialog) : dialog_(std::move(dialog)) {
    std::lock_guard lock(tables().mutex);
    tables().dialogs[dialog_.id].push_back(&dialog_);
}

DialogResource::~DialogResource() {
    std::lock_guard lock(tables().mutex);
    removeFrom(tables().dialogs, dialog_.id, static_cast<const DialogTemplate*>(&dialog_));
}

StringResource::StringResource(std::initializer_list<std::pair<UINT, const wchar_t*>> strings) {
    for (const auto& [id, text] : strings)
        strings_.emplace_back(id, text);
    std::lock_guard lock(tables().mutex);
    for (const auto& [id, text] : strings_)
        tables().strings[id].push_back(&text);
}

StringResource::~StringResource() {
    std::lock_guard lock(tables().mutex);
    for (const auto& [id, text] : strings_)
        removeFrom(tables().strings, id, &text);
}

const DialogTemplate* findDialogTemplate(UINT id) {
    std::lock_guard lock(tables().mutex);
    auto found = tables().dialogs.find(id);
    return found == tables().dialogs.end() ? nullptr : found->second.back();
}

const std::wstring* findString(UINT id) {
    std::lock_guard lock(tables().mutex);
    auto found = tables().strings.find(id);
    return found == tables().strings.end() ? nullptr : found->second.back();
}

} // namespace win
