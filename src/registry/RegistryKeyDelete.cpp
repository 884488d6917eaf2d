// Deleting sub-keys. Neither member deletes by name from this key: each opens its target for
// writing through OpenSubKey, whose failures pass through unchanged, and deletes it through the
// target's own handle.
#include "RegistryKey.h"

#include "KeyHandles.h"

#include "frame/RaisedError.h"
#include "platform/Api.h"

namespace orbex {

void RegistryKey::DeleteSubKey(const String& name, Boolean errorOnMissingSubKey) {
    const auto target = OpenSubKey(name, True);
    if (!target) {
        if (isTrue(errorOnMissingSubKey)) {
            Raise(vqInvalidArgument, L"DeleteSubKey", RegistryText::SubKeyMissing);
        }
        return;
    }
    if (target->SubKeyCount() >= 1) {
        Raise(vqInvalidOperation, L"DeleteSubKey", RegistryText::SubKeyHasChildren);
    }
    lastError_ = platform::api().RegDeleteKeyA(ToPlatform(target->GetKeyHandle()), "");
    if (lastError_ == 0) MarkModified();
    if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"DeleteSubKey", RegistryText::NoAccess);
    }
}

// Depth first, children before their parent. Each level's names are fetched before its first
// child goes, so deleting does not disturb the index order being walked. Below the top level a
// child that vanished meanwhile is passed over.
void RegistryKey::DeleteSubKeyTree(const String& name, Boolean errorOnMissingSubKey) {
    const auto target = OpenSubKey(name, True);
    if (!target) {
        if (isTrue(errorOnMissingSubKey)) {
            Raise(vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::SubKeyMissing);
        }
        return;
    }
    if (target->IsRootHandle()) {
        Raise(vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::RootNotDeletable);
    }
    if (target->SubKeyCount() != 0) {
        const StringArray children = target->GetSubKeyNames();
        if (children.lower >= 0) {
            for (const String& child : children.items) target->DeleteSubKeyTree(child, False);
        }
    }
    target->DeleteSubKey(L"", False);
}

}  // namespace orbex
