#pragma once

#include <fontconfig/fontconfig.h>

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace lumirra {

/// The fonts of a font configuration. Any thread.
class FontSystem {
  public:
    /// Reads the configuration of the system, or takes one of the caller's, which must outlive
    /// this.
    explicit FontSystem(FcConfig* config = nullptr);
    ~FontSystem();
    FontSystem(const FontSystem&) = delete;
    FontSystem& operator=(const FontSystem&) = delete;

    /// A family of exactly that name that can be drawn at any size.
    bool Has(const QString& family) const;

    /// What the configuration names in place of that family in particular, the best first,
    /// installed or not; nothing of what it falls back on for any family.
    QStringList Aliases(const QString& family) const;

    /// The family that has most of the letters of the text, the configuration's order deciding
    /// between equals; empty without any font.
    QString Covering(const QString& text) const;

  private:
    struct Face {
        QString family;
        FcCharSet* letters;
    };
    struct Freed {
        void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    };

    FcConfig* config_;
    QStringList general_;  ///< what any family falls back on
    std::unique_ptr<FcFontSet, Freed> sorted_;
    std::vector<Face> faces_;  ///< of `sorted_`
};

}  // namespace lumirra
