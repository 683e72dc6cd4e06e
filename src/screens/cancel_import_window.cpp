#include "screens/windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_cancel_import(session::Session& /*session*/, QWidget* parent) {
  return std::make_unique<QDialog>(parent);
}

}  // namespace twk::screens
