// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <memory>
#include <string_view>

/// The status-bar library, loaded on demand.
namespace hushmode::platform {

/// An icon in the status bar. Looked up by name; its class exists only once the library is loaded.
class HUSHMODE_API LSStatusBarItem : public Object {
 public:
  static constexpr std::string_view className = "LSStatusBarItem";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<LSStatusBarItem> initWithIdentifier(std::string_view identifier, int alignment) = 0;
  };

  ~LSStatusBarItem() override;
  virtual void setImageName(std::string_view name) = 0;
  virtual void setVisible(bool visible) = 0;
};

}  // namespace hushmode::platform
