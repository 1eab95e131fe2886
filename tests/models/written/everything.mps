NAME          everything
ROWS
 N  cost
 E  equal
 G  range
 G  least
 G  loose
 G  empty
COLUMNS
    a         equal     1              least     -1
    b         equal     1
    c         cost      0.5            equal     -1
    d         cost      -1             range     0.3
    e         range     -1e+20         loose     1
    f         least     1              loose     1
    idle      cost      0
RHS
    RHS       cost      -17.25         equal     1e-07
    RHS       range     -0.125         least     12
    RHS       loose     -1e+30         empty     -1
RANGES
    RNG       range     0.375          empty     3
BOUNDS
 FR BND       a
 MI BND       b
 UP BND       b         -1.5
 LO BND       c         -2
 UP BND       c         7
 FX BND       d         4
 LO BND       e         0
 UP BND       e         -3
 LO BND       f         0.1
ENDATA
