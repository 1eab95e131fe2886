// Models to start from.
export const examples: Readonly<Record<string, string>> = {
  Factory: `\\ Chairs and tables out of wood and labour.
Maximize
 profit: 30 chairs + 70 tables
Subject To
 wood: 2 chairs + 5 tables <= 300
 labour: 4 chairs + 3 tables <= 240
End
`,
  Diet: `\\ The cheapest meals that keep one going.
Minimize
 price: 2.5 bread + 1.2 beans + 4 cheese + 0.8 cabbage
Subject To
 energy: 265 bread + 340 beans + 400 cheese + 25 cabbage >= 2200
 protein: 9 bread + 21 beans + 25 cheese + 1.3 cabbage >= 60
 vitamin: 36 cabbage >= 80
Bounds
 bread <= 6
 cheese <= 2
End
`,
  Transport: `\\ Two plants, three markets.
Minimize
 freight: 4 a1 + 6 a2 + 9 a3 + 5 b1 + 3 b2 + 8 b3
Subject To
 plant_a: a1 + a2 + a3 <= 350
 plant_b: b1 + b2 + b3 <= 600
 market_1: a1 + b1 >= 325
 market_2: a2 + b2 >= 300
 market_3: a3 + b3 >= 275
End
`,
  "A contradiction": `\\ More is promised than there is room for.
Maximize
 gain: 3 x + 2 y
Subject To
 room: x + y <= 4
 promised_x: x >= 3
 promised_y: y >= 2
End
`,
  "Without end": `Maximize
 sum: x + y
Subject To
 a: x - y <= 1
 b: y - x <= 1
End
`,
  "Exact thirds": `\\ Tenths are tenths here, and thirds are thirds.
Maximize
 sum: x + y
Subject To
 a: 0.1 x + 0.2 y <= 0.3
 b: 3 x + y <= 1
End
`,
  "Corner to corner": `\\ A cube of which the simplex method may visit every corner.
Maximize
 4 x + 2 y + z
Subject To
 c1: x <= 5
 c2: 4 x + y <= 25
 c3: 8 x + 4 y + z <= 125
End
`,
};
