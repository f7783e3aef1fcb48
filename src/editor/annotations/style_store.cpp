#include "editor/annotations/style_store.h"

#include <algorithm>
#include <type_traits>

#include "settings/settings.h"

namespace glimmer {

TShapeStyle readStyle(const TCachedMemIniFile& store, const std::string& name, const TShapeStyle& standard) {
    const std::string section = styleSection(name);
    TShapeStyle style = standard;
    visitStyle(style, [&](const char* key, auto& field) {
        using Field = std::remove_reference_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, std::string>)
            field = store.readString(section, key, field);
        else if constexpr (std::is_same_v<Field, bool>)
            field = store.readBool(section, key, field);
        else
            field = static_cast<Field>(store.readInteger(section, key, static_cast<int32_t>(field)));
    });
    clampSettings(style);
    return style;
}

void writeStyle(TCachedMemIniFile& store, const std::string& name, const TShapeStyle& style) {
    const std::string section = styleSection(name);
    visitStyle(style, [&](const char* key, const auto& field) {
        using Field = std::remove_cv_t<std::remove_reference_t<decltype(field)>>;
        if constexpr (std::is_same_v<Field, std::string>)
            store.writeString(section, key, field);
        else if constexpr (std::is_same_v<Field, bool>)
            store.writeBool(section, key, field);
        else
            store.writeInteger(section, key, static_cast<int32_t>(field));
    });
}

namespace {

constexpr const char* nameKey = "styleName";
// The options that the last used style has followed.
constexpr const char* textPositionKey = "optionTextPosition";
constexpr const char* numberPositionKey = "optionNumberPosition";
constexpr const char* fontNameKey = "optionFontName";

}  // namespace

TShapeStyle lastUsedStyle(const NewAnnotationOptions& options) {
    const std::string reserved(lastUsedStyleName);
    const std::string section = styleSection(reserved);
    TShapeStyle style = readStyle(settings(), reserved, *predefinedStyle("Default"));
    style.name = settings().readString(section, nameKey, style.name);
    NewAnnotationOptions followed = options;
    followed.textPosition = settings().readInteger(section, textPositionKey, style.text.position);
    followed.numberPosition = static_cast<NumberPosition>(
        settings().readInteger(section, numberPositionKey, static_cast<int32_t>(style.number.position)));
    followed.fontName = settings().readString(section, fontNameKey, style.text.fontName);
    followChange(style, followed, options);
    // Ink cannot be drawn without a pen: the next annotation is a shape.
    if (style.shape.kind == ShapeKind::Drawing) style.shape.kind = ShapeKind::FilledRectangle;
    return style;
}

void rememberLastUsedStyle(const TShapeStyle& style, const NewAnnotationOptions& options) {
    const std::string reserved(lastUsedStyleName);
    const std::string section = styleSection(reserved);
    writeStyle(settings(), reserved, style);
    settings().writeString(section, nameKey, style.name);
    settings().writeInteger(section, textPositionKey, options.textPosition);
    settings().writeInteger(section, numberPositionKey, static_cast<int32_t>(options.numberPosition));
    settings().writeString(section, fontNameKey, options.fontName);
}

std::vector<TShapeStyle> allStyles() {
    const std::span<const TShapeStyle> predefined = predefinedStyles();
    std::vector<TShapeStyle> styles(predefined.begin(), predefined.end());
    for (const std::string& name : styleNames(settings())) {
        if (name.empty() || name == lastUsedStyleName) continue;
        const auto known = std::find_if(styles.begin(), styles.end(), [&](const auto& s) { return s.name == name; });
        TShapeStyle style = readStyle(settings(), name, known == styles.end() ? *predefinedStyle("Default") : *known);
        style.name = name;
        if (known == styles.end())
            styles.push_back(std::move(style));
        else
            *known = std::move(style);
    }
    return styles;
}

void storeStyle(const TShapeStyle& style) {
    if (style.name.empty() || style.name == lastUsedStyleName) return;
    writeStyle(settings(), style.name, style);
    settings().save();
}

void deleteStyle(const std::string& name) {
    settings().removeSection(styleSection(name));
    settings().save();
}

}  // namespace glimmer
