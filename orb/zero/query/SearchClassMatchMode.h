#pragma once

namespace orb::zero::query {

/// Which elements a search for a class finds.
enum class SearchClassMatchMode { ThisClassOnly, WithSubclasses };

}  // namespace orb::zero::query
