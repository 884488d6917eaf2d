#include "RegistryKey.h"

#include "KeyHandles.h"

#include "frame/Ansi.h"
#include "frame/FunctionLib.h"
#include "platform/Api.h"

namespace orbex {
namespace {

const wchar_t* RootNameText(Long root) {
    switch (root) {
        case vqClassesRoot: return L"HKEY_CLASSES_ROOT\\";
        case vqCurrentUser: return L"HKEY_CURRENT_USER\\";
        case vqLocalMachine: return L"HKEY_LOCAL_MACHINE\\";
        case vqUsers: return L"HKEY_USERS\\";
        case vqPerformanceData: return L"HKEY_PERFORMANCE_DATA\\";
        case vqCurrentConfig: return L"HKEY_CURRENT_CONFIG\\";
        case vqDynData: return L"HKEY_DYN_DATA\\";
        default: return L"";
    }
}

constexpr platform::Dword MessageFromSystem = 0x1000;  // FORMAT_MESSAGE_FROM_SYSTEM
constexpr platform::Dword MessageBufferLength = 200;

}  // namespace

RegistryKey::RegistryKey() = default;

RegistryKey::~RegistryKey() {
    try {
        CloseKey();
    } catch (...) {
        // Termination cannot report a failure; the handle is as good as released.
    }
}

String RegistryKey::MachineName() const {
    return machineName_;
}

Long RegistryKey::ValueCount() {
    return QueryCount(true);
}

Long RegistryKey::SubKeyCount() {
    return QueryCount(false);
}

// Asks for every figure of the key and keeps one; a failed query leaves the count at 0.
Long RegistryKey::QueryCount(bool values) {
    KeyFigures figures;
    lastError_ = QueryFigures(keyHandle_, figures);
    return static_cast<Long>(values ? figures.values : figures.subKeys);
}

String RegistryKey::Name() const {
    if (!IsRootConstant(rootKey_)) return String{};
    return RootNameText(rootKey_) + subKeyPath_;
}

void RegistryKey::AutoFlush(Boolean value) {
    autoFlush_ = value;
}

Boolean RegistryKey::AutoFlush() const {
    return autoFlush_;
}

// The one place where this key's handle is released. A root constant is closed too, which the
// platform ignores, but stays in place so that a root object remains usable.
void RegistryKey::CloseKey() {
    if (!IsValidHandle(keyHandle_)) return;
    if (isTrue(modified_) && isTrue(autoFlush_)) Flush();
    // A handle shared after a rename is closed by whichever holder lets go of it last.
    const bool lastHolder = !handleShare_ || handleShare_.use_count() == 1;
    if (lastHolder) platform::api().RegCloseKey(ToPlatform(keyHandle_));
    handleShare_.reset();
    if (!IsRootHandle(keyHandle_)) keyHandle_ = NoHandle;
}

void RegistryKey::Flush() {
    if (!IsValidHandle(keyHandle_)) return;
    lastError_ = platform::api().RegFlushKey(ToPlatform(keyHandle_));
    modified_ = False;
}

void RegistryKey::SetRootKey(Long value) {
    rootKey_ = value;
}

void RegistryKey::SetKeyHandle(Long value) {
    handleShare_.reset();
    keyHandle_ = value;
}

void RegistryKey::ShareKeyHandle(RegistryKey& holder) {
    if (!holder.handleShare_) holder.handleShare_ = std::make_shared<char>();
    handleShare_ = holder.handleShare_;
    keyHandle_ = holder.keyHandle_;
}

Long RegistryKey::GetKeyHandle() const {
    return keyHandle_;
}

// "" stays ""; anything else is trimmed and gets two leading backslashes unless it has them.
void RegistryKey::SetMachineName(const String& text) {
    if (text.empty()) {
        machineName_.clear();
        return;
    }
    machineName_ = TrimBlanks(text);
    if (machineName_.compare(0, 2, L"\\\\") != 0) machineName_.insert(0, L"\\\\");
}

void RegistryKey::SetSubKeyPath(const String& text) {
    subKeyPath_ = text;
    if (!subKeyPath_.empty() && subKeyPath_.front() == L'\\') subKeyPath_.erase(0, 1);
}

Long RegistryKey::ReadLastError() const {
    return lastError_;
}

// The system's own wording for LastError, line end included, as the system gives it.
String RegistryKey::LastErrorText() {
    if (lastError_ == 0) return L"OK";
    std::string buffer(MessageBufferLength, '\0');
    const platform::Dword length = platform::api().FormatMessageA(
        MessageFromSystem, nullptr, static_cast<platform::Dword>(lastError_), 0, buffer.data(),
        MessageBufferLength, nullptr);
    if (length == 0) return L"Undefined Error.";
    return FromAnsi(buffer).substr(0, length);
}

bool RegistryKey::IsValidHandle(Long handle) const {
    if (handle == OwnHandle) handle = keyHandle_;
    return handle != 0 && handle != NoHandle;
}

bool RegistryKey::IsRootHandle(Long handle) const {
    if (handle == OwnHandle) handle = keyHandle_;
    return IsRootConstant(handle);
}

void RegistryKey::MarkModified() {
    modified_ = True;
}

}  // namespace orbex
