#pragma once

#include "zelDb/ZelDbSqlite.h"
#include "zelDb/ZelDbSqliteModel.h"

#include <QString>

#include <cstddef>
#include <cstdint>

/// A model in memory for what the inputs are read into, made once for each process.
///
/// mol1 has the components mcp1 (features P, Q, R; sites bst1, bst2), mcp2 (no feature; site bst3)
/// and mcp3 (feature X, no site); mol2 has mcp4 (feature P; sites bst4, bst5). cpx1 is mol1, mol2,
/// mol1 with bonds between them, cpa1 its alias.
class FuzzModel
{
public:
    static FuzzModel &instance();

    ZelDbSqlite file;
    ZelDbSqliteModel db{&file};

private:
    FuzzModel();
};

/// An input: a digit that chooses how it is read, then the text.
struct FuzzInput
{
    FuzzInput(const std::uint8_t *data, std::size_t size);
    bool has(int bit) const { return (mode & bit) != 0; }

    int mode = 0;
    QString text;
};

/// Whether a reader has said since the last call that it refused its text.
bool takeRefusal();
/// Ends the process as a finding, saying what differs.
void require(bool good, const char *what, const QString &actual = {}, const QString &expected = {});
