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
    DeleteOpenKey(*target, true);
}

// The last step of DeleteSubKey: `target`, opened for writing, goes unless it has sub-keys,
// which are counted only when some may be there. The outcome is this key's LastError.
void RegistryKey::DeleteOpenKey(RegistryKey& target, bool mayHaveSubKeys) {
    if (mayHaveSubKeys && target.SubKeyCount() >= 1) {
        Raise(vqInvalidOperation, L"DeleteSubKey", RegistryText::SubKeyHasChildren);
    }
    lastError_ = platform::api().RegDeleteKeyA(ToPlatform(target.GetKeyHandle()), "");
    if (lastError_ == 0) MarkModified();
    if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"DeleteSubKey", RegistryText::NoAccess);
    }
}

void RegistryKey::DeleteSubKeyTree(const String& name, Boolean errorOnMissingSubKey) {
    DeleteTree(name, errorOnMissingSubKey);
}

// Depth first, children before their parent. Each level's names are fetched before its first
// child goes, so deleting does not disturb the index order being walked. Below the top level a
// child that vanished meanwhile is passed over. True when the sub-key is known to be gone.
bool RegistryKey::DeleteTree(const String& name, Boolean errorOnMissingSubKey) {
    const auto target = OpenSubKey(name, True);
    if (!target) {
        if (isTrue(errorOnMissingSubKey)) {
            Raise(vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::SubKeyMissing);
        }
        return false;
    }
    if (target->IsRootHandle()) {
        Raise(vqInvalidArgument, L"DeleteSubKeyTree", RegistryText::RootNotDeletable);
    }
    bool subKeysLeft = false;  // a sub-key may be left: the key is counted again before it goes
    if (target->SubKeyCount() != 0) {
        const StringArray children = target->GetSubKeyNames();
        subKeysLeft = children.lower < 0;
        if (!subKeysLeft) {
            for (const String& child : children.items) subKeysLeft |= !target->DeleteTree(child, False);
        }
    }
    // Opening a local key again for its delete would give the same key, so it goes through its
    // own handle. On another machine the new open makes a new connection from this key's root,
    // which may answer otherwise: the key is opened anew, as for any delete.
    if (!target->machineName_.empty()) {
        target->DeleteSubKey(L"", False);
        return false;
    }
    target->DeleteOpenKey(*target, subKeysLeft);
    return target->lastError_ == 0;
}

}  // namespace orbex
