#pragma once

/// What an untranslated item is, as the record's name says: the block of the file that it stands
/// in, or where it stands beside the blocks.
namespace ZelBnglItem {
inline constexpr char Species[] = "seed species";
inline constexpr char PopulationType[] = "population types";
inline constexpr char Function[] = "functions";
inline constexpr char EnergyPattern[] = "energy patterns";
inline constexpr char PopulationMap[] = "population maps";
inline constexpr char Rule[] = "reaction rules";
inline constexpr char Setting[] = "settings"; ///< a command before the model
inline constexpr char Action[] = "actions";
} // namespace ZelBnglItem
