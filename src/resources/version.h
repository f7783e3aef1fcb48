// Version information, shared by the resources of the library and of the launcher.
#define VERSION_NUMBERS 0, 1, 0, 0
#define VERSION_TEXT "0.1.0"
#define COPYRIGHT "Copyright 2026 the authors of Glimmerpad"

#define VERSION_BLOCK(TYPE, FILE_NAME, DESCRIPTION)          \
    1 VERSIONINFO                                            \
    FILEVERSION VERSION_NUMBERS                              \
    PRODUCTVERSION VERSION_NUMBERS                           \
    FILEOS 0x40004                                           \
    FILETYPE TYPE                                            \
    BEGIN                                                    \
        BLOCK "StringFileInfo"                               \
        BEGIN                                                \
            BLOCK "040904B0"                                 \
            BEGIN                                            \
                VALUE "CompanyName", "Glimmerpad"            \
                VALUE "FileDescription", DESCRIPTION         \
                VALUE "FileVersion", VERSION_TEXT            \
                VALUE "InternalName", FILE_NAME              \
                VALUE "LegalCopyright", COPYRIGHT            \
                VALUE "OriginalFilename", FILE_NAME          \
                VALUE "ProductName", "Glimmerpad"            \
                VALUE "ProductVersion", VERSION_TEXT         \
            END                                              \
        END                                                  \
        BLOCK "VarFileInfo"                                  \
        BEGIN                                                \
            VALUE "Translation", 0x409, 1200                 \
        END                                                  \
    END
