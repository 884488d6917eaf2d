// One registry key: a root, a path from it and an open handle. The handle is the key's own and
// is released in CloseKey; the root is never released, and a child is opened anew from the
// root by its whole path rather than from its parent's handle.
#pragma once
#include "RegistryErrors.h"
#include "frame/Types.h"
#include "frame/Variant.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

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

// The value types a key stores, each the platform's type number.
enum vqRegValueType : Long {
    vqString = 1,
    vqExpandedString = 2,
    vqBinary = 3,
    vqDWORD = 4,
    vqMultiString = 7,
    vqQWORD = 11,
};

class RegistryKey {
public:
    RegistryKey();
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    // The key itself
    String MachineName() const;
    Long ValueCount();
    Long SubKeyCount();
    String Name() const;
    void AutoFlush(Boolean value);
    Boolean AutoFlush() const;
    void CloseKey();
    void Flush();

    // Opening and creating sub-keys; nullptr is the empty reference.
    std::unique_ptr<RegistryKey> OpenSubKey(const String& name = L"", Boolean writeable = False);
    std::unique_ptr<RegistryKey> CreateSubKey(const String& name);
    bool SubKeyExists(const String& name);
    std::unique_ptr<RegistryKey> OpenRemoteBaseKey(Long rootKey, const String& machineName);

    // Listing: bounds -1 to -1 with one "" element when there is nothing to list.
    StringArray GetSubKeyNames();
    StringArray GetValueNames();

    // Deleting
    void DeleteSubKey(const String& name, Boolean errorOnMissingSubKey = False);
    void DeleteSubKeyTree(const String& name, Boolean errorOnMissingSubKey = False);
    void DeleteValue(const String& name, Boolean errorOnMissingSubKey = False);

    // Reading and writing values
    bool HasDefaultValue();
    Variant GetValue(const String& name, const Variant& defaultValue = String(), Boolean expandVariables = True);
    Variant GetValueEx(const String& name, Long& dataType, const Variant& defaultValue = String(),
                       Boolean expandVariables = True);
    void SetValue(const String& name, const Variant& value, Long valueType = vqString);

    // Copying and renaming; the receiver is the source. A null destination is the empty reference.
    std::unique_ptr<RegistryKey> RenameSubKey(const String& name);
    std::unique_ptr<RegistryKey> CopySubKey(const String& name);
    RegistryKey* CopySubKeyEx(RegistryKey* destination);
    void CopyValues(RegistryKey* destination);
    void CopyValue(const String& name, RegistryKey* destination);
    void RenameValue(const String& oldName, const String& newName);

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

    // Deleting
    void DeleteOpenKey(RegistryKey& target, bool mayHaveSubKeys);
    bool DeleteTree(const String& name, Boolean errorOnMissingSubKey);

    // Opening: run on a new key whose machine name, root and path are set.
    bool ConnectAndOpen(bool writeable, bool create);
    bool ConnectRoot(const String& machineName);
    // A new key below this one by the naming rule of OpenSubKey and CreateSubKey.
    std::unique_ptr<RegistryKey> NewSubKey(const String& name) const;
    // Opening
    // A connection handle this key put into RootKey; closed once, when the key goes away.
    struct OwnedConnection {
        Long handle = NoHandle;
        ~OwnedConnection();
    };
    OwnedConnection connection_;

    // Copying and renaming
    enum class Transfer { Copy, Move };
    std::unique_ptr<RegistryKey> CopyOrMoveSubKey(const String& name, Transfer transfer, const wchar_t* member);
    void CopyTree(RegistryKey& destination, Transfer transfer, const wchar_t* member);
    void CopySubKeys(RegistryKey& destination, Transfer transfer, const wchar_t* member);
    void CopyValuesTo(RegistryKey& destination, Transfer transfer, const wchar_t* member);
    void CopyValueTo(const String& name, RegistryKey& destination, const String& targetName, Transfer transfer,
                     const wchar_t* member);
    struct ListedValue {
        String name;
        std::uint32_t type;
        std::vector<std::uint8_t> data;
    };
    std::vector<ListedValue> ListValues();
    // GetValueNames, showing `keep` each value's type and data as the listing fetches them.
    using ValueKeeper = std::function<void(std::uint32_t type, const std::uint8_t* data, std::uint32_t size)>;
    StringArray ListValueNames(const ValueKeeper& keep);
    static void WriteValues(const std::vector<ListedValue>& values, RegistryKey& destination);
    void CarryRawValue(const String& name, RegistryKey& destination, const String& targetName,
                       const wchar_t* member);
    bool Contains(const RegistryKey& other) const;
    // Takes over another key's handle; the platform handle is then closed once, by the last holder.
    void ShareKeyHandle(RegistryKey& holder);

    Boolean autoFlush_ = False;
    Boolean modified_ = False;
    String machineName_;  // "" or a name beginning with two backslashes
    String subKeyPath_;   // from the root, with no leading backslash
    Long rootKey_ = NoHandle;
    Long lastError_ = 0;  // result of this key's latest registry call
    Long keyHandle_ = NoHandle;
    // Present while KeyHandle is shared with another key (after a rename); see CloseKey.
    std::shared_ptr<void> handleShare_;
};

}  // namespace orbex
