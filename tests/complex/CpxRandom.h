#pragma once

#include "complex/CpxPlan.h"
#include "randomUser/RandomDice.h"

/// Random complexes.
namespace CpxRandom {

/// Anything that can stand in a complex, sound or not: parts without bonds between them, bonds
/// within a molecule, sites with several bonds, bonds with one site, sites that share an id, ids
/// that look like parts of the texts, any binding status. Small, or nearly a tree: the texts of
/// its bond trees stay short.
CpxPlan anything(RandomDice &dice);

/// A sound species: connected, each site in one bond at most, the sites of a molecule told apart
/// by their ids, molecules of one id alike but for their states.
CpxPlan species(RandomDice &dice, int maxMols);

/// The same species told otherwise: molecules, bonds and their ends in another order.
CpxPlan shuffled(const CpxPlan &plan, RandomDice &dice);
/// With another order of the components of each molecule and of their sites, too.
CpxPlan shuffledInside(const CpxPlan &plan, RandomDice &dice);

} // namespace CpxRandom
