#pragma once

#include "platform/directory.hpp"

namespace twk::ads {

/// An object that only knows its name: every other operation raises kNotImplementedByProvider. Kinds of
/// objects inherit from it what they do not support.
class BasicObject : public platform::DirectoryObject {
 public:
  platform::Value Get(std::string_view attribute) override;
  void Put(std::string_view attribute, const platform::Value& value) override;
  void PutEx(int control, std::string_view attribute, const platform::Value& value) override;
  void SetInfo() override;
  void SetPassword(std::string_view password) override;
  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view relative_name) override;
  void Delete(std::string_view object_class, std::string_view relative_name) override;
  platform::ObjectPtr MoveHere(std::string_view source_path,
                               const std::optional<std::string>& new_name) override;
  void Add(std::string_view path) override;
  void Remove(std::string_view path) override;
  bool IsMember(std::string_view path) override;
  std::vector<platform::ObjectPtr> Members() override;
  std::vector<platform::ObjectPtr> Groups() override;
  std::string Syntax() override;
  bool MultiValued() override;

 protected:
  [[noreturn]] void not_implemented(std::string_view operation) const;
};

/// True when `classes` is empty or holds the class, in any case.
bool is_wanted(std::span<const std::string> classes, std::string_view object_class);

}  // namespace twk::ads
