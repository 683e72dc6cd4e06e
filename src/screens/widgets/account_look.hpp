#pragma once

#include <QIcon>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

/// How the state of an account looks in the tree and in lists (`directory::mark`): disabled ones are pale and
/// struck through, locked and expired ones have a sign on their picture, and each is named in words.
namespace twk::screens {

/// "Jo Smith (disabled)".
QString with_marks(const QString& text, std::uint8_t marks);

/// The foreground or font of a marked account; nothing for one that looks like any other.
QVariant look_of_marks(std::uint8_t marks, int role);

/// Pictures by name, each drawn once.
class MarkedPictures {
 public:
  const QIcon& of(const std::string& name, std::uint8_t marks) const;

 private:
  mutable std::map<std::pair<std::string, std::uint8_t>, QIcon> icons_;
};

}  // namespace twk::screens
