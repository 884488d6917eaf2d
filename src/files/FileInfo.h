// One file described: its kind, size, attribute bits and three dates, read from the platform at
// each assignment of Filename and held until the next; and its version resource, looked up
// afresh at every read.
#pragma once
#include "frame/Types.h"

#include <cstddef>

namespace orbex {

enum vqFileType : Long {
    vqFTUnknown = 0,
    vqFTDisk = 1,
    vqFTCharacter = 2,
    vqFTPipe = 3,
};

class FileInfo {
public:
    // The platform's attribute bits, one per attribute property.
    enum Attribute : Long {
        ReadOnlyBit = 0x1,
        HiddenBit = 0x2,
        SystemBit = 0x4,
        DirectoryBit = 0x10,
        ArchiveBit = 0x20,
        NormalBit = 0x80,
        TemporaryBit = 0x100,
        SparseFileBit = 0x200,
        ReparsePointBit = 0x400,
        CompressedBit = 0x800,
        OfflineBit = 0x1000,
        NotContentIndexedBit = 0x2000,
        EncryptedBit = 0x4000,
    };

    String Filename() const { return filename_; }
    void Filename(const String& filename);  // stores the text and loads the file's data

    vqFileType FileType() const { return static_cast<vqFileType>(fileType_); }
    Currency Size() const { return size_; }

    Boolean AttributeArchive() const { return Has(ArchiveBit); }
    void AttributeArchive(Boolean value) { Write(ArchiveBit, value); }
    Boolean AttributeCompressed() const { return Has(CompressedBit); }
    Boolean AttributeDirectory() const { return Has(DirectoryBit); }
    Boolean AttributeEncrypted() const { return Has(EncryptedBit); }
    Boolean AttributeHidden() const { return Has(HiddenBit); }
    void AttributeHidden(Boolean value) { Write(HiddenBit, value); }
    Boolean AttributeNormal() const { return Has(NormalBit); }
    Boolean AttributeNotContentIndexed() const { return Has(NotContentIndexedBit); }
    void AttributeNotContentIndexed(Boolean value) { Write(NotContentIndexedBit, value); }
    Boolean AttributeOffline() const { return Has(OfflineBit); }
    void AttributeOffline(Boolean value) { Write(OfflineBit, value); }
    Boolean AttributeReadOnly() const { return Has(ReadOnlyBit); }
    void AttributeReadOnly(Boolean value) { Write(ReadOnlyBit, value); }
    Boolean AttributeReparsePoint() const { return Has(ReparsePointBit); }
    Boolean AttributeSparseFile() const { return Has(SparseFileBit); }
    Boolean AttributeSystem() const { return Has(SystemBit); }
    void AttributeSystem(Boolean value) { Write(SystemBit, value); }
    Boolean AttributeTemporary() const { return Has(TemporaryBit); }
    void AttributeTemporary(Boolean value) { Write(TemporaryBit, value); }

    Date CreationDate() const { return creationDate_; }
    Date LastAccessDate() const { return lastAccessDate_; }
    Date LastWriteDate() const { return lastWriteDate_; }

    // The version resource, read from the file at every call.
    String Version() const;
    Integer MajorVersion() const;
    Integer MinorVersion() const;
    Integer RevisionVersion() const;
    Integer BuildVersion() const;
    String Description() const;
    String Comments() const;
    String CompanyName() const;
    String InternalName() const;
    String LegalCopyright() const;
    String LegalTrademarks() const;
    String OriginalFilename() const;
    String ProductName() const;

private:
    void ResetFileData();
    void LoadFileData();
    Boolean Has(Long bit) const { return toBoolean((fileAttributes_ & bit) != 0); }
    void Write(Long bit, Boolean value);
    String GetVersionValue(const wchar_t* key) const;
    Integer VersionComponent(std::size_t index) const;

    Long fileType_ = 0;
    Currency size_;
    String filename_;
    Date creationDate_;
    Date lastAccessDate_;
    Date lastWriteDate_;
    Long fileAttributes_ = 0;
};

}  // namespace orbex
