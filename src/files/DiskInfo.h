// One volume described: label, file system, serial number, size figures, file-system flags and
// drive type, read from the platform at each assignment of RootName and held until the next.
#pragma once
#include "frame/Types.h"

namespace orbex {

enum vqDriveType : Long {
    vqDTUnknown = 0,
    vqDTRemovable = 2,
    vqDTFixed = 3,
    vqDTRemote = 4,
    vqDTCDROM = 5,
    vqDTRAMDisk = 6,
    vqDTNoRoot = 1,
};

class DiskInfo {
public:
    // The platform's file-system flag bits behind the six capability properties.
    enum Flag : Long {
        CaseSensitiveSearch = 0x1,
        CasePreservedNames = 0x2,
        UnicodeOnDisk = 0x4,
        PersistentAcls = 0x8,
        FileCompression = 0x10,
        VolumeIsCompressed = 0x8000,
    };

    String RootName() const { return rootName_; }
    void RootName(const String& text);  // parses the root and reads the volume; never fails

    String VolumeLabel() const { return volumeLabel_; }
    void VolumeLabel(const String& label);  // renames the volume; the stored label stays

    String FileSystem() const { return fileSystem_; }
    Long SerialNumber() const { return serialNumber_; }
    String SerialNumberHex() const;
    Long MaxFilenameLength() const { return maxFilenameLength_; }

    Currency TotalBytes() const { return total_; }
    Currency TotalBytesFree() const { return totalFree_; }
    Currency TotalBytesUsed() const;
    Currency UserBytesFree() const { return userFree_; }

    Boolean SupportsCaseSensitiveFilenames() const { return Has(CaseSensitiveSearch); }
    Boolean CaseIsPreserved() const { return Has(CasePreservedNames); }
    Boolean PersistentACLs() const { return Has(PersistentAcls); }
    Boolean SupportsUnicodeFilenames() const { return Has(UnicodeOnDisk); }
    Boolean SupportsFileBasedCompression() const { return Has(FileCompression); }
    Boolean VolumeCompressed() const { return Has(VolumeIsCompressed); }

    // Whether the system has the 64-bit free-space query; decided at each read.
    Boolean HasLargeDriveSupport() const;

    vqDriveType DriveType() const { return static_cast<vqDriveType>(driveType_); }

private:
    void InitSettings();
    Boolean Has(Long bit) const { return toBoolean((flags_ & bit) != 0); }

    Long driveType_ = 0;
    Currency totalFree_;
    Currency total_;
    Currency userFree_;
    String rootName_;
    String volumeLabel_;
    String fileSystem_;
    Long flags_ = 0;
    Long serialNumber_ = 0;
    Long maxFilenameLength_ = 0;
};

}  // namespace orbex
