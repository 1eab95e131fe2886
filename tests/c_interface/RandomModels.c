/* Random edits of a model, beside the same edits of a dense table. */
#include "Check.h"

enum
{
    Largest = 8
};

/* NaN is no entry. */
typedef struct Table
{
    uint32_t rows;
    uint32_t columns;
    double entry[Largest][Largest];
    double cost[Largest];
    double columnLower[Largest];
    double columnUpper[Largest];
    double rowLower[Largest];
    double rowUpper[Largest];
} Table;

static void CheckSame(NuvModel* model, const Table* table)
{
    NuvModelArrays held;
    uint64_t entries = 0;
    uint32_t i;
    uint32_t j;
    uint64_t at;
    held.size = sizeof held;
    CHECK_OK(NuvModelGetArrays(model, &held));
    CHECK(held.numRows == table->rows && held.numColumns == table->columns);
    for (j = 0; j < table->columns && j < held.numColumns; ++j)
        CHECK(held.costs[j] == table->cost[j] && held.columnLower[j] == table->columnLower[j] &&
              held.columnUpper[j] == table->columnUpper[j]);
    for (i = 0; i < table->rows && i < held.numRows; ++i)
    {
        CHECK(held.rowLower[i] == table->rowLower[i] && held.rowUpper[i] == table->rowUpper[i]);
        for (j = 0; j < table->columns; ++j)
            entries += isnan(table->entry[i][j]) ? 0 : 1;
        for (at = held.starts[i]; at < held.starts[i + 1]; ++at)
            CHECK(held.indices[at] < table->columns &&
                  held.values[at] == table->entry[i][held.indices[at]]);
    }
    CHECK(held.numEntries == entries && held.starts[held.numRows] == entries);
}

static double LowerBound(Random* random)
{
    return Below(random, 4) == 0 ? -(double)INFINITY : SmallNumber(random);
}

static double UpperBound(Random* random)
{
    return Below(random, 4) == 0 ? (double)INFINITY : SmallNumber(random);
}

static void AddRows(NuvModel* model, Table* table, Random* random)
{
    const uint32_t count = Below(random, Largest - table->rows + 1);
    uint64_t starts[Largest + 1] = {0};
    uint32_t columns[Largest * Largest];
    double values[Largest * Largest];
    uint64_t end = 0;
    uint32_t k;
    uint32_t j;
    for (k = 0; k < count; ++k)
    {
        const uint32_t i = table->rows + k;
        /* From a random column on, so that the indices do not always increase. */
        const uint32_t first = Below(random, Largest);
        for (j = 0; j < Largest; ++j)
        {
            const uint32_t column = (first + j) % Largest;
            table->entry[i][column] = (double)NAN;
            if (column >= table->columns || Below(random, 2))
                continue;
            table->entry[i][column] = values[end] = SmallNumber(random);
            columns[end++] = column;
        }
        starts[k + 1] = end;
        table->rowLower[i] = LowerBound(random);
        table->rowUpper[i] = UpperBound(random);
    }
    CHECK_OK(NuvModelAddRows(model, count, table->rowLower + table->rows,
                             table->rowUpper + table->rows, starts, columns, values, NULL, 0,
                             NULL));
    table->rows += count;
}

static void AddColumns(NuvModel* model, Table* table, Random* random)
{
    const uint32_t count = Below(random, Largest - table->columns + 1);
    uint32_t k;
    uint32_t i;
    for (k = table->columns; k < table->columns + count; ++k)
    {
        table->cost[k] = SmallNumber(random);
        table->columnLower[k] = LowerBound(random);
        table->columnUpper[k] = UpperBound(random);
        for (i = 0; i < Largest; ++i)
            table->entry[i][k] = (double)NAN;
    }
    CHECK_OK(NuvModelAddColumns(model, count, table->cost + table->columns,
                                table->columnLower + table->columns,
                                table->columnUpper + table->columns, NULL, 0, NULL));
    table->columns += count;
}

static void RemoveRow(NuvModel* model, Table* table, uint32_t row)
{
    uint32_t i;
    CHECK_OK(NuvModelRemoveRows(model, 1, &row, NULL));
    --table->rows;
    for (i = row; i < table->rows; ++i)
    {
        memcpy(table->entry[i], table->entry[i + 1], sizeof table->entry[i]);
        table->rowLower[i] = table->rowLower[i + 1];
        table->rowUpper[i] = table->rowUpper[i + 1];
    }
}

static void RemoveColumn(NuvModel* model, Table* table, uint32_t column)
{
    uint32_t i;
    uint32_t j;
    CHECK_OK(NuvModelRemoveColumns(model, 1, &column, NULL));
    --table->columns;
    for (j = column; j < table->columns; ++j)
    {
        table->cost[j] = table->cost[j + 1];
        table->columnLower[j] = table->columnLower[j + 1];
        table->columnUpper[j] = table->columnUpper[j + 1];
        for (i = 0; i < Largest; ++i)
            table->entry[i][j] = table->entry[i][j + 1];
    }
}

static void SetNumbers(NuvModel* model, Table* table, Random* random)
{
    const uint32_t row = Below(random, table->rows);
    const uint32_t column = Below(random, table->columns);
    const double value = SmallNumber(random);
    table->cost[column] = SmallNumber(random);
    table->columnLower[column] = LowerBound(random);
    table->columnUpper[column] = UpperBound(random);
    table->rowUpper[row] = UpperBound(random);
    table->entry[row][column] = value == 0.0 ? (double)NAN : value;
    CHECK_OK(NuvModelSetCosts(model, 1, &column, &table->cost[column], NULL));
    CHECK_OK(NuvModelSetColumnBounds(model, 1, &column, &table->columnLower[column],
                                     &table->columnUpper[column], NULL));
    CHECK_OK(NuvModelSetRowBounds(model, 1, &row, NULL, &table->rowUpper[row], NULL));
    CHECK_OK(NuvModelSetCoefficients(model, 1, &row, &column, &value, NULL));
}

/* The same model, its matrix given by columns. */
static void CheckByColumns(const Table* table, Random* random)
{
    NuvModel* model = NuvModelConstruct();
    NuvModelArrays arrays;
    uint64_t starts[Largest + 1] = {0};
    uint32_t rows[Largest * Largest];
    double values[Largest * Largest];
    uint64_t end = 0;
    uint32_t i;
    uint32_t j;
    for (j = 0; j < table->columns; ++j)
    {
        const uint32_t first = table->rows == 0 ? 0 : Below(random, table->rows);
        for (i = 0; i < table->rows; ++i)
        {
            const uint32_t row = (first + i) % table->rows;
            if (isnan(table->entry[row][j]))
                continue;
            values[end] = table->entry[row][j];
            rows[end++] = row;
        }
        starts[j + 1] = end;
    }
    CHECK_OK(NuvModelArraysInit(&arrays, sizeof arrays));
    arrays.numColumns = table->columns;
    arrays.numRows = table->rows;
    arrays.layout = NUV_LAYOUT_ByColumns;
    arrays.numEntries = end;
    arrays.costs = table->cost;
    arrays.columnLower = table->columnLower;
    arrays.columnUpper = table->columnUpper;
    arrays.rowLower = table->rowLower;
    arrays.rowUpper = table->rowUpper;
    arrays.starts = starts;
    arrays.indices = rows;
    arrays.values = values;
    CHECK_OK(NuvModelAssignArrays(model, &arrays, NULL));
    CheckSame(model, table);
    NuvModelDestruct(model);
}

void TestRandomModels(void)
{
    const int cases = CasesOf(1000);
    for (currentCase = 0; currentCase < (unsigned long long)cases; ++currentCase)
    {
        Random random = {currentCase};
        Table table;
        NuvModel* model = NuvModelConstruct();
        int step;
        memset(&table, 0, sizeof table);
        for (step = 0; step < 12; ++step)
        {
            const uint32_t kind = Below(&random, 5);
            if (kind == 0)
                AddRows(model, &table, &random);
            else if (kind == 1)
                AddColumns(model, &table, &random);
            else if (kind == 2 && table.rows > 0)
                RemoveRow(model, &table, Below(&random, table.rows));
            else if (kind == 3 && table.columns > 0)
                RemoveColumn(model, &table, Below(&random, table.columns));
            else if (table.rows > 0 && table.columns > 0)
                SetNumbers(model, &table, &random);
            CheckSame(model, &table);
        }
        CheckByColumns(&table, &random);
        NuvModelDestruct(model);
    }
    currentCase = 0;
}
