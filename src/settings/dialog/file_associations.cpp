#include "settings/dialog/file_associations.h"

namespace glimmer {

namespace {

struct Association {
    std::string_view control;
    std::string_view extension;
};

constexpr Association table[] = {
    {"chkPNGAssociation", ".png"},   {"chkGIFAssociation", ".gif"}, {"chkJPEGAssociation", ".jpg"},
    {"chkJPEGAssociation", ".jpeg"}, {"chkBMPAssociation", ".bmp"}, {"chkGMPAssociation", ".gmp"},
};

class PlainFileAssociations : public FileAssociations {
public:
    Status associate(std::string_view /*extension*/, bool /*on*/) override {
        return Failure{
            "This version does not set up file associations by itself. Use \"Open with\" in the menu of a file "
            "to choose the program that opens it."};
    }
};

}  // namespace

std::unique_ptr<FileAssociations> plainFileAssociations() { return std::make_unique<PlainFileAssociations>(); }

Status applyAssociations(FileAssociations& associations, const Options& before, const Options& after) {
    for (const Association& association : table) {
        const bool on = after.on(association.control);
        if (on == before.on(association.control)) continue;
        if (Status done = associations.associate(association.extension, on); !done) return done;
    }
    return {};
}

}  // namespace glimmer
