// One registry key: a root, a path from it and an open handle. The handle is the key's own and
// is released in CloseKey; the root is never released, and a child is opened anew from the
// root by its whole path rather than from its parent's handle.
#pragma once
#include "RegistryErrors.h"
#include "frame/Types.h"

namespace orbex {

// The seven root keys, each the platform's predefined handle of the same meaning.
enum vqRegKeys : Long {
    vqClassesRoot = static_cast<Long>(0x80000000),
    vqCurrentUser = static_cast<Long>(0x80000001),
    vqLocalMachine = static_cast<Long>(0x80000002),
    vqUsers = static_cast<Long>(0x80000003),
    vqPerformanceData = static_cast<Long>(0x80000004),
    vqCurrentConfig = static_cast<Long>(0x80000005),
    vqDynData = static_cast<Long>(0x80000006),
};

class RegistryKey {
public:
    RegistryKey();
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    String MachineName() const;
    Long ValueCount();
    Long SubKeyCount();
    String Name() const;
    void AutoFlush(Boolean value);
    Boolean AutoFlush() const;
    void CloseKey();
    void Flush();

    // For RegLib and the members that create, open or move keys.
    void SetRootKey(Long value);
    void SetKeyHandle(Long value);
    Long GetKeyHandle() const;
    void SetMachineName(const String& text);
    void SetSubKeyPath(const String& text);
    Long ReadLastError() const;
    String LastErrorText();
    // The handle -2 stands for this key's own KeyHandle.
    bool IsValidHandle(Long handle = OwnHandle) const;
    bool IsRootHandle(Long handle = OwnHandle) const;
    // Something was written through this key since the last Flush.
    void MarkModified();

private:
    static constexpr Long OwnHandle = -2;
    static constexpr Long NoHandle = -1;

    Long QueryCount(bool values);

    Boolean autoFlush_ = False;
    Boolean modified_ = False;
    String machineName_;  // "" or a name beginning with two backslashes
    String subKeyPath_;   // from the root, with no leading backslash
    Long rootKey_ = NoHandle;
    Long lastError_ = 0;  // result of this key's latest registry call
    Long keyHandle_ = NoHandle;
};

}  // namespace orbex
