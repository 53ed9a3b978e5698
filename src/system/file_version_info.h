#pragma once

#include <windows.h>

#include <string>

// What a file's version resource tells, in the language that suits the user best. Texts that it does not have
// are empty. Any thread, one at a time.
class CFileVersionInfo {
  public:
    CFileVersionInfo() = default;
    virtual ~CFileVersionInfo() = default;

    // Forgets what was read before. False when the file has no version resource or one without a language;
    // its fixed information may have been read even so.
    bool Create(const char* fileName);

    // The same for the file of a loaded module, null for the running program.
    bool CreateFromModule(HMODULE module);

    const VS_FIXEDFILEINFO& GetFixedInfo() const { return fixedInfo; }
    const std::string& GetCompanyName() const { return companyName; }
    const std::string& GetFileDescription() const { return fileDescription; }
    const std::string& GetFileVersion() const { return fileVersion; }
    const std::string& GetInternalName() const { return internalName; }
    const std::string& GetLegalCopyright() const { return legalCopyright; }
    const std::string& GetOriginalFileName() const { return originalFileName; }
    const std::string& GetProductName() const { return productName; }
    const std::string& GetProductVersion() const { return productVersion; }
    const std::string& GetComments() const { return comments; }
    const std::string& GetLegalTrademarks() const { return legalTrademarks; }
    const std::string& GetPrivateBuild() const { return privateBuild; }
    const std::string& GetSpecialBuild() const { return specialBuild; }

  protected:
    // Clears everything.
    virtual void Reset();

  private:
    struct NamedText {
        const char* name;  // in the resource, whose names are found in any letter case
        std::string CFileVersionInfo::*text;
    };
    static const NamedText kTexts[];

    VS_FIXEDFILEINFO fixedInfo = {};
    std::string companyName;
    std::string fileDescription;
    std::string fileVersion;
    std::string internalName;
    std::string legalCopyright;
    std::string originalFileName;
    std::string productName;
    std::string productVersion;
    std::string comments;
    std::string legalTrademarks;
    std::string privateBuild;
    std::string specialBuild;
};

// "3, 1, 1, 4" as the user is shown it, "3.1.1": points between the numbers, and at most three of these.
std::string ShortVersion(std::string text);
